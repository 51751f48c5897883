#include "registry_support.h"

CStoredValue ReadStoredValue(HKEY root, const std::string &key, const char *name)
{
    CStoredValue value;
    HKEY handle;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return value;
    DWORD size = 0;
    if (RegQueryValueExA(handle, name, NULL, &value.Type, NULL, &size) == ERROR_SUCCESS) {
        std::vector<char> bytes(size + 1);
        if (RegQueryValueExA(handle, name, NULL, &value.Type, reinterpret_cast<BYTE *>(bytes.data()), &size) ==
            ERROR_SUCCESS) {
            value.Exists = true;
            value.Data.assign(bytes.data(), size);
        }
    }
    RegCloseKey(handle);
    return value;
}

std::vector<std::string> StoredValueNames(HKEY root, const std::string &key)
{
    std::vector<std::string> names;
    HKEY handle;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return names;
    for (DWORD index = 0;; ++index) {
        char name[16384];
        DWORD length = sizeof name;
        if (RegEnumValueA(handle, index, name, &length, NULL, NULL, NULL, NULL) != ERROR_SUCCESS)
            break;
        names.push_back(std::string(name, length));
    }
    RegCloseKey(handle);
    return names;
}

bool KeyExists(HKEY root, const std::string &key)
{
    HKEY handle;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return false;
    RegCloseKey(handle);
    return true;
}

void DeleteKeyTree(HKEY root, const std::string &key)
{
    HKEY handle;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_ALL_ACCESS, &handle) == ERROR_SUCCESS) {
        std::vector<std::string> children;
        for (DWORD index = 0;; ++index) {
            char name[256];
            DWORD length = sizeof name;
            if (RegEnumKeyExA(handle, index, name, &length, NULL, NULL, NULL, NULL) != ERROR_SUCCESS)
                break;
            children.push_back(name);
        }
        RegCloseKey(handle);
        for (const std::string &child : children)
            DeleteKeyTree(root, key + "\\" + child);
    }
    RegDeleteKeyA(root, key.c_str());
}
