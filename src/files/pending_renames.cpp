#include "files/pending_renames.h"

#include <cstring>

#include "files/file_spec.h"
#include "support/handles.h"

namespace {

const char SessionManagerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager";
const char DelayedMovesValue[] = "PendingFileRenameOperations";
// The list's own form of a path ("\??\C:\x"), and the mark of a target that
// may be replaced ("!\??\C:\x").
const char NtPathPrefix[] = "\\??\\";
const char ReplaceMark = '!';
// Room that the first read of the RENAME section gives its existing lines,
// and the most either list is read to: one that never fits is not used.
const size_t RenameSectionSlack = 1024;
const size_t PendingListMost = 16 * 1024 * 1024;
const int ReadAttempts = 4;

void AddPath(CPathSet &paths, std::string path)
{
    if (!path.empty() && path[0] == ReplaceMark)
        path.erase(0, 1);
    if (path.compare(0, sizeof NtPathPrefix - 1, NtPathPrefix) == 0)
        path.erase(0, sizeof NtPathPrefix - 1);
    if (!path.empty())
        paths.insert(path);
}

// The value's bytes, read again while it grows between the calls.
bool ReadDelayedMoves(std::vector<char> &block)
{
    CRegistryHandle key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, SessionManagerKey, 0, KEY_QUERY_VALUE, key.Put()) != ERROR_SUCCESS)
        return false;
    DWORD type = 0, size = 0;
    if (RegQueryValueExA(key.Get(), DelayedMovesValue, NULL, &type, NULL, &size) != ERROR_SUCCESS)
        return false;
    for (int attempt = 0; attempt < ReadAttempts && size <= PendingListMost; ++attempt) {
        block.assign(size + 1, 0);
        DWORD given = size + 1;
        LONG status = RegQueryValueExA(key.Get(), DelayedMovesValue, NULL, &type,
                                       reinterpret_cast<BYTE *>(block.data()), &given);
        if (status == ERROR_SUCCESS) {
            block.resize(given);
            return type == REG_MULTI_SZ;
        }
        if (status != ERROR_MORE_DATA)
            return false;
        size = given;
    }
    return false;
}

// Pairs of source and target, a target empty for a deletion.
void AddDelayedMoves(CPathSet &paths)
{
    std::vector<char> block;
    if (!ReadDelayedMoves(block))
        return;
    for (const std::string &entry : SplitAtNuls(block.data(), block.size()))
        AddPath(paths, entry);
}

// Lines of "target=source".
void AddWininitRenames(CPathSet &paths)
{
    std::string wininit = WininitPath();
    std::vector<char> buffer;
    DWORD used = 0;
    if (wininit.empty() || !ReadRenameSection(wininit.c_str(), 0, buffer, used))
        return;
    for (const std::string &line : SplitAtNuls(buffer.data(), used)) {
        size_t equals = line.find('=');
        AddPath(paths, line.substr(0, equals));
        if (equals != std::string::npos)
            AddPath(paths, line.substr(equals + 1));
    }
}

}  // namespace

CPathSet PendingRenamePaths()
{
    CPathSet paths;
    AddDelayedMoves(paths);
    AddWininitRenames(paths);
    return paths;
}

std::string WininitPath()
{
    CFileSpec wininit;
    wininit.Resolve(FileSpecWindows);
    wininit.SetFileName("WININIT.INI");
    return wininit.Fits() ? std::string(wininit.FullPath()) : std::string();
}

bool ReadRenameSection(const char *path, size_t extra, std::vector<char> &buffer, DWORD &used)
{
    // A buffer too small gives size - 2; read again until the section and
    // the new line fit.
    for (size_t size = extra + RenameSectionSlack; size <= PendingListMost; size *= 2) {
        buffer.assign(size, 0);
        used = GetPrivateProfileSectionA("RENAME", buffer.data(), static_cast<DWORD>(size), path);
        if (used + 2 < size && used + extra + 2 <= size)
            return true;
    }
    return false;
}
