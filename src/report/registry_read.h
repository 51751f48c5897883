// Plain reads of the registry for the report: keys opened for reading only,
// values and subkeys listed whole, however long their names.
#ifndef TOVREL_REPORT_REGISTRY_READ_H
#define TOVREL_REPORT_REGISTRY_READ_H

#include <windows.h>

#include <string>
#include <vector>

#include "support/handles.h"

struct NamedValue {
    std::string Name;
    std::string Text;  // the data as text, without the NULs at its end
};

bool OpenKeyToRead(HKEY root, const std::string &path, CRegistryHandle &key);
bool ListValues(HKEY key, std::vector<NamedValue> &values);
bool ListSubkeys(HKEY key, std::vector<std::string> &names);
bool QueryValueBytes(HKEY key, const std::string &name, DWORD &type, std::vector<BYTE> &data);
// Bytes of a text value, cut at the first NUL.
std::string TextOfBytes(const std::vector<BYTE> &data);

#endif
