#include "files/leftovers.h"

#include <windows.h>

#include "files/file_identity.h"
#include "files/temp_names.h"
#include "support/handles.h"

namespace {

const char PendingSuffix[] = ".new_file";

// Each plain file of directory whose name matches pattern, links and
// subdirectories left out.
template <typename Visit>
void ForEachFile(const std::string &directory, const char *pattern, Visit visit)
{
    WIN32_FIND_DATAA found;
    CFindHandle find(FindFirstFileA((directory + pattern).c_str(), &found));
    for (bool more = find.IsValid(); more; more = FindNextFileA(find.Get(), &found) != 0)
        if (!(found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)))
            visit(std::string(found.cFileName));
}

}  // namespace

void CLeftovers::Clear(const char *target)
{
    std::string path(target);
    std::string directory = path.substr(0, FileNameOffset(target));
    if (Visited.insert(directory).second)
        Visit(directory);
    CPathSet::iterator stale = StalePending.find(path + PendingSuffix);
    if (stale == StalePending.end())
        return;
    DeleteLeftover(stale->c_str());
    StalePending.erase(stale);
}

// One look for each kind of name, however many targets the directory gets:
// a name that is not there costs a read of the whole directory.
void CLeftovers::Visit(const std::string &directory)
{
    std::string temporary = std::string(TempNamePrefix) + "*" + StagedFileSuffix;
    ForEachFile(directory, temporary.c_str(), [&](const std::string &name) {
        if (IsTempName(name.c_str(), StagedFileSuffix))
            DeleteLeftover((directory + name).c_str());
    });
    ForEachFile(directory, (std::string("*") + PendingSuffix).c_str(), [&](const std::string &name) {
        if (!PendingRead)
            Pending = PendingRenamePaths();
        PendingRead = true;
        if (!Pending.count(directory + name))
            StalePending.insert(directory + name);
    });
}
