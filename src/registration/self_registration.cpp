#include "registration/self_registration.h"

#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "files/path_parts.h"
#include "files/uninstall_data.h"
#include "support/handles.h"

const char SelfRegisterExport[] = "DllRegisterServer";

bool IsExecutableExtension(const char *extension) { return CompareNoCase(extension, ".exe") == 0; }

namespace {

typedef HRESULT(STDAPICALLTYPE *RegisterServerProc)();

// Every directory that a destination entry names, in map order, each once:
// entries are ids, maybe with a subdirectory that plays no part here, so
// that thousands of them may name a handful of directories.
std::vector<std::string> DestinationDirectories(CPrinterInf &inf)
{
    std::vector<std::string> directories;
    std::set<std::string, CPathLess> seen;
    for (const auto &entry : inf.DestinationDirs)
        for (const CBoundedString &destination : entry.second) {
            char directory[CBoundedString::Capacity] = "";
            if (inf.FindDirectoryIdText(destination, directory) && seen.insert(directory).second)
                directories.push_back(directory);
        }
    return directories;
}

// The system's own search first, which starts where `file` points; then each
// destination directory, in map order, until one loads. `file` is left
// where the library was found.
CLibrary LoadElement(const std::vector<std::string> &directories, CFileSpec &file, const char *element)
{
    CLibrary module(LoadLibraryA(file.FullPath()));
    for (size_t i = 0; !module.IsValid() && i < directories.size(); ++i) {
        file.SetPath(directories[i].c_str());
        file.SetFileName(element);
        module.Reset(LoadLibraryA(file.FullPath()));
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
void RegisterFile(CPrinterInf &inf, const std::vector<std::string> &directories, CFileSpec &file,
                  const char *element)
{
    file.SetFileName(element);
    if (IsExecutableExtension(file.Extension))
        return;
    CLibrary module = LoadElement(directories, file, element);
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
    std::vector<std::string> directories = DestinationDirectories(*this);
    char *element = list.Text;
    while (element && *element) {
        char *rest = NextToken(element, ',');
        StripChar(element, ' ');
        RegisterFile(*this, directories, file, element);
        element = rest;
    }
    return 0;
}
