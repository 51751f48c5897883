#include "uninstall/record_values.h"

#include "record/product_keys.h"
#include "uninstall/windows_error.h"

bool CRecordValues::Forget(const char *part, const std::string &name, std::string &failure)
{
    CRegistryHandle &key = Parts[part];
    if (!key.IsValid()) {
        LONG opened = RegOpenKeyExA(HKEY_LOCAL_MACHINE, (RecordKeyPath(Model) + "\\" + part).c_str(), 0,
                                    KEY_SET_VALUE, key.Put());
        if (opened == ERROR_FILE_NOT_FOUND)
            return true;
        if (opened != ERROR_SUCCESS) {
            failure = "its record value stays: the record cannot be opened, " + ErrorText(opened);
            return false;
        }
    }
    LONG deleted = RegDeleteValueA(key.Get(), name.c_str());
    if (deleted == ERROR_SUCCESS || deleted == ERROR_FILE_NOT_FOUND)
        return true;
    failure = "its record value stays: " + ErrorText(deleted);
    return false;
}
