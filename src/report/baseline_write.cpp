#include <shlwapi.h>

#include <cstring>

#include "report/baseline_write.h"

static const char *const PartNames[] = {BaselineFiles, BaselineServices, BaselinePrinters};

bool CBaselineWriter::Begin(const std::string &model, LONG &error)
{
    std::string path = BaselineKeyPath(model);
    error = static_cast<LONG>(SHDeleteKeyA(HKEY_LOCAL_MACHINE, path.c_str()));
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND)
        return false;
    for (int i = 0; i < PartCount; ++i) {
        error = RegCreateKeyExA(HKEY_LOCAL_MACHINE, (path + "\\" + PartNames[i]).c_str(), 0, NULL,
                                REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, NULL, Parts[i].Put(), NULL);
        if (error != ERROR_SUCCESS)
            return false;
    }
    return true;
}

// "label=text" strings, each closed by a NUL, and one more NUL at the end.
static std::string MultiStringOf(const BaselineFields &fields)
{
    std::string data;
    for (const BaselineFields::value_type &field : fields)
        data += field.first + "=" + field.second + '\0';
    return data + '\0';
}

bool CBaselineWriter::Add(const char *part, const std::string &name, const BaselineFields &fields, LONG &error)
{
    for (int i = 0; i < PartCount; ++i) {
        if (std::strcmp(PartNames[i], part) != 0)
            continue;
        std::string data = MultiStringOf(fields);
        error = RegSetValueExA(Parts[i].Get(), name.c_str(), 0, REG_MULTI_SZ,
                               reinterpret_cast<const BYTE *>(data.data()), static_cast<DWORD>(data.size()));
        return error == ERROR_SUCCESS;
    }
    error = ERROR_INVALID_PARAMETER;
    return false;
}

void CBaselineWriter::Abandon(const std::string &model)
{
    for (CRegistryHandle &part : Parts)
        part.Reset();
    SHDeleteKeyA(HKEY_LOCAL_MACHINE, BaselineKeyPath(model).c_str());
}
