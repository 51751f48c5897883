// One open registry key and the result of the last call made on it.
#ifndef TOVREL_REGISTRATION_REG_KEY_H
#define TOVREL_REGISTRATION_REG_KEY_H

#include <windows.h>

#include "support/handles.h"

class CRegKey {
public:
    CRegKey();
    virtual ~CRegKey();

    // Both close whatever key was open first, whether or not they succeed.
    bool Create(HKEY root, const char *subkey);
    bool Open(HKEY root, const char *subkey);
    // A length of -1 stands for the text's length, without its NUL.
    bool SetString(const char *name, const char *text, int length);
    bool QueryValue(const char *name, DWORD *type, BYTE *data, DWORD *size);
    // A text value into a buffer of `size` bytes (size > 0), always ended
    // within it. A value that cannot be read, or does not fit, leaves the
    // buffer empty and gives false.
    bool QueryString(const char *name, char *out, DWORD size);
    // Writes the value names as NUL-terminated strings and one closing NUL,
    // which comes on top of *size: the buffer holds *size + 1 bytes.
    bool EnumValueNames(char *buffer, DWORD *size, DWORD *count);

    bool IsOpen() const { return Key.IsValid(); }
    HKEY Handle() const { return Key.Get(); }

    CRegistryHandle Key;
    LONG Status;

private:
    CRegKey(const CRegKey &);
    CRegKey &operator=(const CRegKey &);
};

#endif
