#include "registration/reg_key.h"

#include "inf/bounded_string.h"

CRegKey::CRegKey() : Status(ERROR_SUCCESS) {}

CRegKey::~CRegKey() {}

bool CRegKey::Create(HKEY root, const char *subkey)
{
    static char noClass[] = "";
    DWORD disposition = 0;
    Status = RegCreateKeyExA(root, subkey, 0, noClass, 0, KEY_ALL_ACCESS, NULL, Key.Put(), &disposition);
    if (Status != ERROR_SUCCESS) {
        Key.Release();  // whatever the call left there is no key of ours
        return false;
    }
    return true;
}

bool CRegKey::Open(HKEY root, const char *subkey)
{
    Status = RegOpenKeyExA(root, subkey, 0, KEY_ALL_ACCESS, Key.Put());
    if (Status != ERROR_SUCCESS) {
        Key.Release();
        return false;
    }
    return true;
}

bool CRegKey::SetString(const char *name, const char *text, int length)
{
    if (!IsOpen())
        return false;
    if (!text)
        text = "";
    DWORD size = length == -1 ? static_cast<DWORD>(lstrlenA(text)) : static_cast<DWORD>(length);
    Status = RegSetValueExA(Key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE *>(text), size);
    return Status == ERROR_SUCCESS;
}

bool CRegKey::QueryValue(const char *name, DWORD *type, BYTE *data, DWORD *size)
{
    if (!IsOpen())
        return false;
    Status = RegQueryValueExA(Key.Get(), name, NULL, type, data, size);
    return Status == ERROR_SUCCESS;
}

bool CRegKey::QueryString(const char *name, char *out, DWORD size)
{
    DWORD type = REG_SZ, read = size;
    // A value that fills the buffer without its NUL does not fit: cut, it
    // would be another text, so it reads as none.
    if (!QueryValue(name, &type, reinterpret_cast<BYTE *>(out), &read) || (read == size && out[size - 1])) {
        out[0] = 0;
        return false;
    }
    if (read < size)
        out[read] = 0;
    return true;
}

bool CRegKey::EnumValueNames(char *buffer, DWORD *size, DWORD *count)
{
    if (!buffer || !size || !count)
        return false;
    *count = 0;
    DWORD used = 0;
    bool listed = false;
    if (IsOpen()) {
        for (DWORD index = 0;; ++index) {
            char name[CBoundedString::Capacity];
            BYTE data[CBoundedString::Capacity];
            DWORD nameLength = sizeof name, dataLength = sizeof data, type = 0;
            Status = RegEnumValueA(Key.Get(), index, name, &nameLength, NULL, &type, data, &dataLength);
            if (Status != ERROR_SUCCESS)
                break;
            listed = true;
            if (used + nameLength + 1 > *size)
                break;
            CopyMemory(buffer + used, name, nameLength);
            buffer[used + nameLength] = 0;
            used += nameLength + 1;
            ++*count;
        }
    }
    if (!listed)
        return false;
    *size = used;
    buffer[used] = 0;
    return true;
}
