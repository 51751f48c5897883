#include <windows.h>
#include <objbase.h>
#include <objidl.h>
#include <shlguid.h>
#include <shobjidl.h>

#include "report/link_target.h"
#include "support/com.h"

bool ReadLinkTarget(const std::string &linkPath, std::string &target)
{
    CComApartment apartment;
    CComPointer<IShellLinkA> link;
    CComPointer<IPersistFile> file;
    if (FAILED(apartment.Join())
        || FAILED(CoCreateInstance(CLSID_ShellLink, NULL, CLSCTX_INPROC_SERVER, IID_IShellLinkA, link.PutVoid()))
        || FAILED(link->QueryInterface(IID_IPersistFile, file.PutVoid()))) {
        target = "the shell's link object is not available";
        return false;
    }
    WCHAR widePath[MAX_PATH];
    if (!MultiByteToWideChar(CP_ACP, 0, linkPath.c_str(), -1, widePath, MAX_PATH)
        || FAILED(file->Load(widePath, STGM_READ))) {
        target = "not a readable link";
        return false;
    }
    char path[MAX_PATH] = "";
    if (FAILED(link->GetPath(path, MAX_PATH, NULL, SLGP_RAWPATH))) {
        target = "its target cannot be read";
        return false;
    }
    target = path;
    return true;
}
