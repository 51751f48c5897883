#include "report/registry_read.h"

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

bool ListValues(HKEY key, std::vector<NamedValue> &values)
{
    DWORD count = 0, longestName = 0, longestData = 0;
    if (RegQueryInfoKeyA(key, NULL, NULL, NULL, NULL, NULL, NULL, &count, &longestName, &longestData,
                         NULL, NULL) != ERROR_SUCCESS)
        return false;
    std::vector<char> name(longestName + 1);
    std::vector<BYTE> data(longestData + 1);
    for (DWORD index = 0; index < count; ++index) {
        DWORD nameSize = static_cast<DWORD>(name.size());
        DWORD dataSize = static_cast<DWORD>(data.size());
        DWORD type = 0;
        if (RegEnumValueA(key, index, name.data(), &nameSize, NULL, &type, data.data(), &dataSize)
            != ERROR_SUCCESS)
            return false;
        NamedValue value;
        value.Name.assign(name.data(), nameSize);
        value.Text = TextOfBytes(std::vector<BYTE>(data.begin(), data.begin() + dataSize));
        values.push_back(value);
    }
    return true;
}

bool ListSubkeys(HKEY key, std::vector<std::string> &names)
{
    DWORD count = 0, longest = 0;
    if (RegQueryInfoKeyA(key, NULL, NULL, NULL, &count, &longest, NULL, NULL, NULL, NULL, NULL, NULL)
        != ERROR_SUCCESS)
        return false;
    std::vector<char> name(longest + 1);
    for (DWORD index = 0; index < count; ++index) {
        DWORD size = static_cast<DWORD>(name.size());
        if (RegEnumKeyExA(key, index, name.data(), &size, NULL, NULL, NULL, NULL) != ERROR_SUCCESS)
            return false;
        names.push_back(std::string(name.data(), size));
    }
    return true;
}

bool QueryValueBytes(HKEY key, const std::string &name, DWORD &type, std::vector<BYTE> &data)
{
    DWORD size = 0;
    if (RegQueryValueExA(key, name.c_str(), NULL, &type, NULL, &size) != ERROR_SUCCESS)
        return false;
    data.assign(size, 0);
    if (size == 0)
        return true;
    if (RegQueryValueExA(key, name.c_str(), NULL, &type, data.data(), &size) != ERROR_SUCCESS)
        return false;
    data.resize(size);
    return true;
}
