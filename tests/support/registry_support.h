// Reading back what a test program wrote to the registry, with the raw API.
#ifndef TOVREL_TESTS_REGISTRY_SUPPORT_H
#define TOVREL_TESTS_REGISTRY_SUPPORT_H

#include <windows.h>

#include <string>
#include <vector>

struct CStoredValue {
    bool Exists = false;
    DWORD Type = 0;
    std::string Data;  // the stored bytes, NULs included, size() is the stored size
};

CStoredValue ReadStoredValue(HKEY root, const std::string &key, const char *name);
// Value names of a key as the registry enumerates them; empty if the key is missing.
std::vector<std::string> StoredValueNames(HKEY root, const std::string &key);
bool KeyExists(HKEY root, const std::string &key);
// Removes a key with everything below it.
void DeleteKeyTree(HKEY root, const std::string &key);

#endif
