#include "registration/self_registration.h"

#include <windows.h>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "files/uninstall_data.h"
#include "support/handles.h"

const char SelfRegisterExport[] = "DllRegisterServer";

bool IsExecutableExtension(const char *extension) { return CompareNoCase(extension, ".exe") == 0; }

namespace {

typedef HRESULT(STDAPICALLTYPE *RegisterServerProc)();

// No directory id has it: Resolve gives the empty spec.

// The system's own search first, which starts where `file` points; then each
// destination directory, in map order, until one loads. `file` is left
// where the library was found.
CLibrary LoadElement(CPrinterInf &inf, CFileSpec &file, const char *element)
{
    CLibrary module(LoadLibraryA(file.FullPath()));
    for (CDestinationDirMap::const_iterator entry = inf.DestinationDirs.begin();
         !module.IsValid() && entry != inf.DestinationDirs.end(); ++entry) {
        for (const CBoundedString &destination : entry->second) {
            char directory[CBoundedString::Capacity] = "";
            // An entry is a directory id, maybe followed by a subdirectory.
            if (!inf.FindDirectoryIdText(destination, directory))
                continue;
            file.SetPath(directory);
            file.SetFileName(element);
            module.Reset(LoadLibraryA(file.FullPath()));
            if (module.IsValid())
                break;
        }
    }
    return module;
}

// What the export gives is not looked at.
void CallRegisterServer(HMODULE module)
{
    RegisterServerProc registerServer = reinterpret_cast<RegisterServerProc>(
        reinterpret_cast<void *>(GetProcAddress(module, SelfRegisterExport)));
    if (registerServer)
        registerServer();
}

// A library that loads is recorded, whether it has the export or not.
void RegisterFile(CPrinterInf &inf, CFileSpec &file, const char *element)
{
    file.SetFileName(element);
    if (IsExecutableExtension(file.Extension))
        return;
    CLibrary module = LoadElement(inf, file, element);
    if (!module.IsValid())
        return;
    CallRegisterServer(module.Get());
    module.Reset();
    CBoundedString name(file.FileName());
    inf.LogUninstall(UninstallUnregister, name, file.FullPath());
}

}  // namespace

int CPrinterInf::RegisterFiles()
{
    CBoundedString list;
    if (!GetValue(InstallSection, "RegisterFiles", list, ""))
        return 0;

    // One spec for the whole list: the directory where one element was
    // found is the first place tried for the next.
    CFileSpec file;
    file.Resolve(FileSpecEmpty);
    char *element = list.Text;
    while (element && *element) {
        char *rest = NextToken(element, ',');
        StripChar(element, ' ');
        RegisterFile(*this, file, element);
        element = rest;
    }
    return 0;
}
