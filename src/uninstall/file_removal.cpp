#include "uninstall/file_removal.h"

#include <algorithm>

#include "record/product_keys.h"
#include "record/text_compare.h"
#include "uninstall/directory_listing.h"
#include "uninstall/path_checks.h"
#include "uninstall/restart_delete.h"
#include "uninstall/windows_error.h"

static const char Kind[] = "file";
// What a replacement by the install leaves beside its target until the
// restart: the new copy that waits (9x), the old one that goes (NT).
static const char *const Companions[] = {".new_file", ".delete_on_reboot"};

namespace {

enum class Deletion { Deleted, Pending, Failed };

struct FileTask {
    std::string Path, Directory, Name;  // the directory with a backslash at its end
    std::string Origin;                 // for a file the record does not name, whose it is
    UninstallItem Item;
    std::vector<std::string> Deleted;  // names of this directory to be found gone
};

typedef std::vector<FileTask>::iterator TaskIterator;

// Gone now, or at the restart when something holds it: a busy file
// refuses its deletion as access denied or as a sharing violation.
Deletion DeleteName(const std::string &path, DWORD attributes, const PendingRenames &pending, std::string &detail)
{
    if (attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesA(path.c_str(), attributes & ~FILE_ATTRIBUTE_READONLY);
    if (DeleteFileA(path.c_str()))
        return Deletion::Deleted;
    DWORD error = GetLastError();
    if (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION && error != ERROR_LOCK_VIOLATION &&
        error != ERROR_USER_MAPPED_FILE) {
        detail = ErrorText(error);
        return Deletion::Failed;
    }
    std::string how, failure;
    if (!DeleteAtRestart(path, pending, how, failure)) {
        detail = "busy (" + ErrorText(error) + "), and " + failure;
        return Deletion::Failed;
    }
    detail = "busy: deleted at the next restart, as " + how + " says";
    return Deletion::Pending;
}

// The install's leftovers of a replacement beside the target go with it.
void DeleteCompanions(FileTask &task, const CDirectoryListing &listing, const PendingRenames &pending)
{
    for (const char *suffix : Companions) {
        DWORD attributes = 0;
        std::string name = task.Name + suffix, detail;
        if (!listing.Find(name, attributes) || (attributes & FILE_ATTRIBUTE_DIRECTORY))
            continue;
        Deletion done = DeleteName(task.Directory + name, attributes, pending, detail);
        if (done == Deletion::Deleted)
            task.Deleted.push_back(name);
        task.Item.Detail += done == Deletion::Deleted ? "; " + name + " deleted" : "; " + name + ": " + detail;
        if (done == Deletion::Failed || (done == Deletion::Pending && task.Item.State != Outcome::Failed))
            task.Item.State = done == Deletion::Failed ? Outcome::Failed : Outcome::Pending;
    }
}

// What becomes of the target as the directory listed it before.
void Decide(FileTask &task, const CDirectoryListing &listing, const CUninstallRun &run, const PendingRenames &pending)
{
    const std::string &path = task.Path;
    DWORD attributes = 0;
    std::string by, detail;
    Claim claim = run.Claims().Of(ClaimKind::File, path, by);
    if (!listing.Find(task.Name, attributes))
        task.Item = MakeItem(Kind, path, Outcome::Absent, "");
    else if (attributes & FILE_ATTRIBUTE_DIRECTORY)
        task.Item = MakeItem(Kind, path, Outcome::Refused, "names a directory, which is never removed");
    else if (claim != Claim::Free)
        task.Item = MakeItem(Kind, path, claim == Claim::Claimed ? Outcome::Shared : Outcome::Failed, by);
    else if (run.WhatIf())
        task.Item = MakeItem(Kind, path, Outcome::Planned, "");
    else {
        Deletion done = DeleteName(path, attributes, pending, detail);
        task.Item = MakeItem(Kind, path, done == Deletion::Pending ? Outcome::Pending : Outcome::Failed, detail);
        if (done == Deletion::Deleted) {
            task.Item.State = Outcome::Removed;
            task.Deleted.push_back(task.Name);
        }
    }
    if (!run.WhatIf() && task.Item.State != Outcome::Shared && task.Item.State != Outcome::Refused)
        DeleteCompanions(task, listing, pending);
    if (!task.Origin.empty())
        task.Item.Detail = task.Origin + (task.Item.Detail.empty() ? "" : "; " + task.Item.Detail);
}

// A file of the record settles its value; one it does not name is told of.
void Finish(CUninstallRun &run, const FileTask &task)
{
    if (task.Origin.empty())
        run.Settle(task.Item, RecordFiles, task.Path);
    else
        run.Tell(task.Item);
}

// Said removed only when the directory, listed again, no longer holds it.
void Confirm(FileTask &task, const CDirectoryListing &after)
{
    DWORD attributes = 0;
    for (const std::string &name : task.Deleted)
        if (after.Find(name, attributes)) {
            task.Item.State = Outcome::Failed;
            task.Item.Detail += (task.Item.Detail.empty() ? "" : "; ") + name + " still there after its deletion";
        }
}

void RemoveDirectoryFiles(CUninstallRun &run, TaskIterator begin, TaskIterator end, const PendingRenames &pending)
{
    CDirectoryListing listing;
    DWORD error = 0;
    if (!listing.Read(begin->Directory, error)) {
        for (TaskIterator task = begin; task != end; ++task) {
            task->Item = MakeItem(Kind, task->Path, Outcome::Failed, "its directory cannot be listed, " + ErrorText(error));
            Finish(run, *task);
        }
        return;
    }
    for (TaskIterator task = begin; task != end; ++task)
        Decide(*task, listing, run, pending);
    bool listedAgain = run.WhatIf() || listing.Read(begin->Directory, error);
    for (TaskIterator task = begin; task != end; ++task) {
        if (!listedAgain && !task->Deleted.empty()) {
            task->Item.State = Outcome::Failed;
            task->Item.Detail += "; whether it is gone cannot be seen: its directory cannot be listed again, " +
                                 ErrorText(error);
        } else if (!run.WhatIf()) {
            Confirm(*task, listing);
        }
        Finish(run, *task);
    }
}

FileTask MakeTask(const std::string &path, const std::string &origin)
{
    size_t slash = path.find_last_of('\\');
    return FileTask{path, path.substr(0, slash + 1), path.substr(slash + 1), origin, UninstallItem(),
                    std::vector<std::string>()};
}

// A value that could not be a file the install wrote is refused before
// anything looks at the disk.
void Screen(CUninstallRun &run, const NamedValue &value, std::vector<FileTask> &tasks)
{
    if (!IsTextValue(value)) {
        run.Settle(RefusedValueType(Kind, value), RecordFiles, value.Name);
        return;
    }
    std::string why = RefusalOfPath(value.Name);
    if (!why.empty()) {
        run.Settle(MakeItem(Kind, value.Name, Outcome::Refused, why), RecordFiles, value.Name);
        return;
    }
    tasks.push_back(MakeTask(value.Name, std::string()));
}

bool SameDirectory(const FileTask &a, const FileTask &b)
{
    return EqualNoCase(a.Directory, b.Directory);
}

}  // namespace

// Directory by directory, each listed once before and once after its deletions.
static void RemoveTasks(CUninstallRun &run, std::vector<FileTask> &tasks)
{
    std::stable_sort(tasks.begin(), tasks.end(), [](const FileTask &a, const FileTask &b) {
        int order = CompareNoCase(a.Directory, b.Directory);
        return order != 0 ? order < 0 : CompareNoCase(a.Name, b.Name) < 0;
    });
    PendingRenames pending = ReadPendingRenames();
    for (TaskIterator begin = tasks.begin(); begin != tasks.end();) {
        TaskIterator end = begin;
        while (end != tasks.end() && SameDirectory(*begin, *end))
            ++end;
        RemoveDirectoryFiles(run, begin, end, pending);
        begin = end;
    }
}

void RemoveFiles(CUninstallRun &run)
{
    std::vector<FileTask> tasks;
    for (const NamedValue &value : run.Record().Files)
        Screen(run, value, tasks);
    RemoveTasks(run, tasks);
}

void RemoveUnrecordedFiles(CUninstallRun &run, const std::vector<UnrecordedFile> &files)
{
    std::vector<FileTask> tasks;
    for (const UnrecordedFile &file : files) {
        std::string why = RefusalOfPath(file.Path);
        if (why.empty())
            tasks.push_back(MakeTask(file.Path, file.Origin));
        else
            run.Tell(MakeItem(Kind, file.Path, Outcome::Refused, file.Origin + "; " + why));
    }
    RemoveTasks(run, tasks);
}
