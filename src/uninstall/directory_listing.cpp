#include "uninstall/directory_listing.h"

#include "record/text_compare.h"
#include "support/handles.h"

bool CDirectoryListing::Read(const std::string &directory, DWORD &error)
{
    Entries.clear();
    WIN32_FIND_DATAA found;
    CFindHandle find(FindFirstFileA((directory + "*").c_str(), &found));
    if (!find.IsValid()) {
        error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    }
    do
        Entries[LowerCase(found.cFileName)] = found.dwFileAttributes;
    while (FindNextFileA(find.Get(), &found));
    error = GetLastError();
    return error == ERROR_NO_MORE_FILES;
}

bool CDirectoryListing::Find(const std::string &name, DWORD &attributes) const
{
    auto entry = Entries.find(LowerCase(name));
    if (entry == Entries.end())
        return false;
    attributes = entry->second;
    return true;
}
