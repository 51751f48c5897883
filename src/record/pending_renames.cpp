#include <windows.h>

#include <cstring>

#include "record/pending_renames.h"
#include "record/registry_read.h"
#include "record/system_family.h"
#include "record/text_compare.h"

const char RenameSection[] = "rename";

static const char SessionManager[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager";
static const char PendingValue[] = "PendingFileRenameOperations";
static const char NtPathPrefix[] = "\\??\\";
static const char WininitName[] = "WININIT.INI";
static const char DeleteTarget[] = "NUL";
static const DWORD FirstSectionBuffer = 4096;
static const DWORD LastSectionBuffer = 16 * 1024 * 1024;
static const DWORD SectionListEnd = 2;

static std::string PlainPath(std::string path)
{
    if (path.compare(0, sizeof NtPathPrefix - 1, NtPathPrefix) == 0)
        path = path.substr(sizeof NtPathPrefix - 1);
    return path;
}

// Every NUL-terminated part of the value, empty ones included: an empty
// target is how the list says "delete".
static std::vector<std::string> SplitAll(const std::vector<BYTE> &data)
{
    std::vector<std::string> parts;
    std::string text(data.begin(), data.end());
    for (size_t at = 0; at < text.size();) {
        size_t end = text.find('\0', at);
        parts.push_back(text.substr(at, end == std::string::npos ? std::string::npos : end - at));
        at = end == std::string::npos ? text.size() : end + 1;
    }
    return parts;
}

// Pairs of source and target; the list ends at the first empty source.
static void ReadNtRenames(PendingRenames &renames)
{
    CRegistryHandle key;
    DWORD type = 0;
    std::vector<BYTE> data;
    if (!OpenKeyToRead(HKEY_LOCAL_MACHINE, SessionManager, key)
        || !QueryValueBytes(key.Get(), PendingValue, type, data))
        return;
    std::vector<std::string> parts = SplitAll(data);
    for (size_t at = 0; at < parts.size() && !parts[at].empty(); at += 2) {
        std::string source = PlainPath(parts[at]);
        std::string target = at + 1 < parts.size() ? PlainPath(parts[at + 1]) : std::string();
        renames.Paths.push_back(source);
        if (target.empty())
            renames.Deletions.push_back(source);
        else
            renames.Paths.push_back(target);
    }
}

std::string WininitLocation()
{
    char windows[MAX_PATH];
    UINT length = GetWindowsDirectoryA(windows, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return std::string();
    return std::string(windows) + (windows[length - 1] == '\\' ? "" : "\\") + WininitName;
}

bool ReadRenameLines(const std::string &wininit, std::vector<std::string> &lines)
{
    // The call cuts a section that does not fit to size - 2; only a shorter
    // answer is whole.
    for (DWORD size = FirstSectionBuffer; size <= LastSectionBuffer; size *= 2) {
        std::vector<char> buffer(size, '\0');
        DWORD length = GetPrivateProfileSectionA(RenameSection, buffer.data(), size, wininit.c_str());
        if (length + SectionListEnd >= size)
            continue;
        for (size_t at = 0; at < length && buffer[at] != '\0'; at += std::strlen(&buffer[at]) + 1)
            lines.push_back(&buffer[at]);
        return true;
    }
    return false;
}

static void Read9xRenames(PendingRenames &renames)
{
    std::vector<std::string> lines;
    std::string wininit = WininitLocation();
    if (wininit.empty() || !ReadRenameLines(wininit, lines))
        return;
    for (const std::string &line : lines) {
        size_t equals = line.find('=');
        std::string target = line.substr(0, equals);
        std::string source = equals == std::string::npos ? std::string() : line.substr(equals + 1);
        renames.Paths.push_back(target);
        if (!source.empty())
            renames.Paths.push_back(source);
        if (EqualNoCase(target, DeleteTarget) && !source.empty())
            renames.Deletions.push_back(source);
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

static bool Names(const std::vector<std::string> &paths, const std::string &path)
{
    for (const std::string &named : paths)
        if (EqualNoCase(named, path))
            return true;
    return false;
}

bool IsPendingRename(const PendingRenames &renames, const std::string &path)
{
    return Names(renames.Paths, path);
}

bool IsPendingDeletion(const PendingRenames &renames, const std::string &path)
{
    return Names(renames.Deletions, path);
}
