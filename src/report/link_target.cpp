#include <windows.h>
#include <objbase.h>
#include <objidl.h>
#include <shlguid.h>
#include <shobjidl.h>

#include "report/link_target.h"
#include "support/com.h"

bool ReadLink(const std::string &linkPath, LinkFacts &facts, std::string &failure)
{
    CComApartment apartment;
    CComPointer<IShellLinkA> link;
    CComPointer<IPersistFile> file;
    if (FAILED(apartment.Join())
        || FAILED(CoCreateInstance(CLSID_ShellLink, NULL, CLSCTX_INPROC_SERVER, IID_IShellLinkA, link.PutVoid()))
        || FAILED(link->QueryInterface(IID_IPersistFile, file.PutVoid()))) {
        failure = "the shell's link object is not available";
        return false;
    }
    WCHAR widePath[MAX_PATH];
    if (!MultiByteToWideChar(CP_ACP, 0, linkPath.c_str(), -1, widePath, MAX_PATH)
        || FAILED(file->Load(widePath, STGM_READ))) {
        failure = "not a readable link";
        return false;
    }
    char path[MAX_PATH] = "", directory[MAX_PATH] = "";
    if (FAILED(link->GetPath(path, MAX_PATH, NULL, SLGP_RAWPATH))
        || FAILED(link->GetWorkingDirectory(directory, MAX_PATH))) {
        failure = "its target or working directory cannot be read";
        return false;
    }
    facts.Target = path;
    facts.WorkingDirectory = directory;
    return true;
}
