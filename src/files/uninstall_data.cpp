#include <windows.h>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "registration/reg_key.h"

const char UninstallRoot[] = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\";
const char UninstallFiles[] = "files";
const char UninstallUnregister[] = "unregister";
const char UninstallServices[] = "services";
const char UninstallRegistry[] = "registry";
const char UninstallShortcuts[] = "Shortcuts";

void CPrinterInf::LogUninstall(const char *subkey, const char *name, const char *data)
{
    bool hasSubkey = subkey && *subkey;
    // A path that does not fit would land in a cut-off key, some other
    // model's or a subkey with a wrong name: such a value is not recorded.
    size_t length = lstrlenA(UninstallRoot) + Model.Length() + (hasSubkey ? 1 + lstrlenA(subkey) : 0);
    if (length > CBoundedString::MaxLength)
        return;

    CBoundedString path(UninstallRoot);
    if (!Model.IsEmpty())
        path.Append(Model);
    if (hasSubkey) {
        path.Append("\\");
        path.Append(subkey);
    }
    CRegKey key;
    key.Create(HKEY_LOCAL_MACHINE, path);
    key.SetString(name, data, -1);
}
