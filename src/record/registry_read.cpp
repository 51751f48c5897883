#include "record/registry_read.h"

// RegQueryInfoKeyA counts the longest name in characters, but the A calls
// give names in bytes of the ANSI code page: under a double-byte code page
// a name takes up to twice its characters, under UTF-8 three times. So the
// buffers fit the registry's longest names at three bytes a character.
static const DWORD LongestValueNameBytes = 16383 * 3 + 1;
static const DWORD LongestKeyNameBytes = 255 * 3 + 1;
// Values of the record and of the baseline are names and short texts; a
// value that grows past this is not read.
static const DWORD LargestValueBytes = 1024 * 1024;

bool OpenKeyToRead(HKEY root, const std::string &path, CRegistryHandle &key)
{
    return RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

std::string TextOfBytes(const std::vector<BYTE> &data)
{
    std::string text(data.begin(), data.end());
    size_t nul = text.find('\0');
    return nul == std::string::npos ? text : text.substr(0, nul);
}

static bool Failed(LONG result, LONG *error)
{
    if (error)
        *error = result;
    return false;
}

// Walks the values until the registry says there are no more, so that a
// count that changed meanwhile matters as little as a count that is wrong.
bool ListValues(HKEY key, std::vector<NamedValue> &values, LONG *error)
{
    std::vector<char> name(LongestValueNameBytes);
    std::vector<BYTE> data(MAX_PATH);
    for (DWORD index = 0;;) {
        DWORD nameSize = static_cast<DWORD>(name.size()), dataSize = static_cast<DWORD>(data.size()), type = 0;
        LONG result = RegEnumValueA(key, index, name.data(), &nameSize, NULL, &type, data.data(), &dataSize);
        if (result == ERROR_NO_MORE_ITEMS)
            return true;
        if (result == ERROR_MORE_DATA && dataSize > data.size() && dataSize <= LargestValueBytes) {
            data.resize(dataSize);
            continue;
        }
        if (result != ERROR_SUCCESS)
            return Failed(result, error);
        NamedValue value;
        value.Name.assign(name.data(), nameSize);
        value.Text = TextOfBytes(std::vector<BYTE>(data.begin(), data.begin() + dataSize));
        value.Type = type;
        values.push_back(value);
        ++index;
    }
}

bool ListSubkeys(HKEY key, std::vector<std::string> &names, LONG *error)
{
    std::vector<char> name(LongestKeyNameBytes);
    for (DWORD index = 0;; ++index) {
        DWORD size = static_cast<DWORD>(name.size());
        LONG result = RegEnumKeyExA(key, index, name.data(), &size, NULL, NULL, NULL, NULL);
        if (result == ERROR_NO_MORE_ITEMS)
            return true;
        if (result != ERROR_SUCCESS)
            return Failed(result, error);
        names.push_back(std::string(name.data(), size));
    }
}

bool QueryValueBytes(HKEY key, const std::string &name, DWORD &type, std::vector<BYTE> &data)
{
    DWORD size = 0;
    if (RegQueryValueExA(key, name.c_str(), NULL, &type, NULL, &size) != ERROR_SUCCESS || size > LargestValueBytes)
        return false;
    data.assign(size, 0);
    if (size == 0)
        return true;
    if (RegQueryValueExA(key, name.c_str(), NULL, &type, data.data(), &size) != ERROR_SUCCESS)
        return false;
    data.resize(size);
    return true;
}
