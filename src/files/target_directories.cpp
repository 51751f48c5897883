#include "files/target_directories.h"

#include <windows.h>

#include <cstring>

#include "files/file_identity.h"
#include "files/temp_names.h"
#include "inf/bounded_string.h"
#include "support/handles.h"

namespace {

const char PendingSuffix[] = ".new_file";

bool EndsWith(const char *name, const char *suffix)
{
    size_t length = std::strlen(name), tail = std::strlen(suffix);
    return length > tail && CompareNoCase(name + length - tail, suffix) == 0;
}

}  // namespace

void CTargetDirectories::Clear(const char *target)
{
    std::string path(target);
    std::string directory = path.substr(0, FileNameOffset(target));
    if (Visited.insert(directory).second)
        Visit(directory);
    CPathSet::iterator stale = StalePending.find(path + PendingSuffix);
    if (stale == StalePending.end())
        return;
    if (DeleteLeftover(stale->c_str()))
        Present.erase(*stale);
    StalePending.erase(stale);
}

void CTargetDirectories::Visit(const std::string &directory)
{
    WIN32_FIND_DATAA found;
    CFindHandle find(FindFirstFileA((directory + "*").c_str(), &found));
    for (bool more = find.IsValid(); more; more = FindNextFileA(find.Get(), &found) != 0) {
        Present.insert(directory + found.cFileName);
        // Links and directories are nobody's leftovers.
        if (!(found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)))
            Note(directory, found.cFileName);
    }
}

void CTargetDirectories::Note(const std::string &directory, const char *name)
{
    std::string path = directory + name;
    if (IsTempName(name, StagedFileSuffix) && DeleteLeftover(path.c_str())) {
        Present.erase(path);
        return;
    }
    if (!EndsWith(name, PendingSuffix))
        return;
    if (!PendingRead)
        Pending = PendingRenamePaths();
    PendingRead = true;
    if (!Pending.count(path))
        StalePending.insert(path);
}
