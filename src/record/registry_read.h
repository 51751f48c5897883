// Plain reads of the registry: keys opened for reading only, values and
// subkeys listed whole, however long their names are in bytes of the ANSI
// code page, and a listing that fails says so.
#ifndef TOVREL_RECORD_REGISTRY_READ_H
#define TOVREL_RECORD_REGISTRY_READ_H

#include <windows.h>

#include <string>
#include <vector>

#include "support/handles.h"

struct NamedValue {
    std::string Name;
    std::string Text;  // the data as text, without the NULs at its end
    DWORD Type = REG_SZ;
};

bool OpenKeyToRead(HKEY root, const std::string &path, CRegistryHandle &key);
// On failure *error holds the registry's code, and values or names hold
// what was read before it.
bool ListValues(HKEY key, std::vector<NamedValue> &values, LONG *error = nullptr);
bool ListSubkeys(HKEY key, std::vector<std::string> &names, LONG *error = nullptr);
bool QueryValueBytes(HKEY key, const std::string &name, DWORD &type, std::vector<BYTE> &data);
// Bytes of a text value, cut at the first NUL.
std::string TextOfBytes(const std::vector<BYTE> &data);

#endif
