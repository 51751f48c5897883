#include <windows.h>

#include "record/pending_renames.h"
#include "record/registry_read.h"
#include "record/system_family.h"
#include "record/text_compare.h"

static const char SessionManager[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager";
static const char PendingValue[] = "PendingFileRenameOperations";
static const char NtPathPrefix[] = "\\??\\";
static const char WininitName[] = "WININIT.INI";
static const char RenameSection[] = "rename";
static const DWORD FirstSectionBuffer = 4096;
static const DWORD LastSectionBuffer = 16 * 1024 * 1024;
static const DWORD SectionListEnd = 2;

// Each NUL-terminated part of a list that ends in an empty one.
static std::vector<std::string> SplitList(const std::vector<char> &list)
{
    std::vector<std::string> parts;
    size_t at = 0;
    while (at < list.size() && list[at] != '\0') {
        std::string part(&list[at]);
        parts.push_back(part);
        at += part.size() + 1;
    }
    return parts;
}

static void ReadNtRenames(PendingRenames &renames)
{
    CRegistryHandle key;
    DWORD type = 0;
    std::vector<BYTE> data;
    if (!OpenKeyToRead(HKEY_LOCAL_MACHINE, SessionManager, key)
        || !QueryValueBytes(key.Get(), PendingValue, type, data))
        return;
    std::vector<char> list(data.begin(), data.end());
    list.push_back('\0');
    list.push_back('\0');
    // Pairs of source and target, where an empty target deletes; an empty
    // string inside the list is no end, so the walk skips it.
    for (size_t at = 0; at < list.size(); at += std::string(&list[at]).size() + 1) {
        std::string path(&list[at]);
        if (path.compare(0, sizeof NtPathPrefix - 1, NtPathPrefix) == 0)
            path = path.substr(sizeof NtPathPrefix - 1);
        if (!path.empty())
            renames.Paths.push_back(path);
    }
}

static std::vector<char> ReadRenameSection(const std::string &wininit)
{
    // The call cuts a section that does not fit to size - 2; only a shorter
    // answer is whole.
    for (DWORD size = FirstSectionBuffer; size <= LastSectionBuffer; size *= 2) {
        std::vector<char> buffer(size, '\0');
        DWORD length = GetPrivateProfileSectionA(RenameSection, buffer.data(), size, wininit.c_str());
        if (length + SectionListEnd < size)
            return buffer;
    }
    return std::vector<char>();
}

static void Read9xRenames(PendingRenames &renames)
{
    char windows[MAX_PATH];
    UINT length = GetWindowsDirectoryA(windows, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return;
    std::string wininit = std::string(windows) + (windows[length - 1] == '\\' ? "" : "\\") + WininitName;
    for (const std::string &line : SplitList(ReadRenameSection(wininit))) {
        size_t equals = line.find('=');
        renames.Paths.push_back(line.substr(0, equals));
        if (equals != std::string::npos)
            renames.Paths.push_back(line.substr(equals + 1));
    }
}

PendingRenames ReadPendingRenames()
{
    PendingRenames renames;
    if (IsNtFamily())
        ReadNtRenames(renames);
    else
        Read9xRenames(renames);
    return renames;
}

bool IsPendingRename(const PendingRenames &renames, const std::string &path)
{
    for (const std::string &pending : renames.Paths)
        if (EqualNoCase(pending, path))
            return true;
    return false;
}
