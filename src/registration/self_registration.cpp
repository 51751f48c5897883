#include "registration/self_registration.h"

#include <windows.h>

#include <cstdlib>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "files/uninstall_data.h"
#include "support/handles.h"

const char SelfRegisterExport[] = "DllRegisterServer";

namespace {

typedef HRESULT(STDAPICALLTYPE *RegisterServerProc)();

}  // namespace

bool IsExecutableExtension(const char *extension) { return CompareNoCase(extension, ".exe") == 0; }

int CPrinterInf::RegisterFiles()
{
    CBoundedString list;
    if (!GetValue(InstallSection, "RegisterFiles", list, ""))
        return 0;

    // One spec for the whole list: the directory where one element was
    // found is the first place tried for the next.
    CFileSpec file;
    file.Resolve(0);
    char *element = list.Text;
    while (element && *element) {
        char *rest = NextToken(element, ',');
        StripChar(element, ' ');
        file.SetFileName(element);
        if (IsExecutableExtension(file.Extension)) {
            element = rest;
            continue;
        }

        CLibrary module(LoadLibraryA(file.FullPath()));
        for (CDestinationDirMap::const_iterator entry = DestinationDirs.begin();
             !module.IsValid() && entry != DestinationDirs.end(); ++entry) {
            for (const CBoundedString &destination : entry->second) {
                char directory[CBoundedString::Capacity] = "";
                if (!FindDirectoryId(std::atoi(destination.Text), directory))
                    continue;
                file.SetPath(directory);
                file.SetFileName(element);
                module.Reset(LoadLibraryA(file.FullPath()));
                if (module.IsValid())
                    break;
            }
        }
        if (module.IsValid()) {
            RegisterServerProc registerServer = reinterpret_cast<RegisterServerProc>(
                reinterpret_cast<void *>(GetProcAddress(module.Get(), SelfRegisterExport)));
            if (registerServer)
                registerServer();
            module.Reset();
            CBoundedString name(file.FileName());
            LogUninstall(UninstallUnregister, name, file.FullPath());
        }
        element = rest;
    }
    return 0;
}
