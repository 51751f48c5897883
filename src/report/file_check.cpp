#include "report/file_check.h"
#include "report/file_content.h"

static const char NewFileSuffix[] = ".new_file";
static const char DeleteOnRebootSuffix[] = ".delete_on_reboot";

// What waits for a restart beside the file or in the list of renames.
static std::string Waiting(const std::string &path, const PendingRenames &renames)
{
    std::string waits;
    for (const char *suffix : {NewFileSuffix, DeleteOnRebootSuffix})
        if (FileIsPresent(path + suffix, NULL))
            waits += std::string(", ") + suffix + " beside it";
    if (IsPendingRename(renames, path))
        waits += ", rename pending at restart";
    return waits;
}

ReportItem CheckRecordedFile(const std::string &path, const FileCheckContext &context)
{
    LocatedFile file = LocateRecordedFile(path, context.Spooler, true);
    std::string waits = Waiting(path, context.Renames);
    if (!file.Facts.Present)
        return MakeItem("file", path, waits.empty() ? ItemState::Drifted : ItemState::Pending, "missing" + waits);
    Verdict content = JudgeContent(path, file.Facts, *context.Baseline, *context.RecordedFiles);
    ItemState state = waits.empty() ? content.State : ItemState::Pending;
    return MakeItem("file", path, state, LocatedText(file) + waits + content.Text);
}

ReportItem CheckRegisteredLibrary(const std::string &name, const std::string &loadedFrom,
                                  const FileCheckContext &context)
{
    std::string path = LocateLibrary(loadedFrom);
    if (path.empty())
        return MakeItem("library", name, ItemState::Drifted, "not found by the system's search");
    FileFacts facts = ReadFileFacts(path, true);
    if (!facts.Present)
        return MakeItem("library", name, ItemState::Drifted, path + " missing");
    Verdict content = JudgeContent(path, facts, *context.Baseline, *context.RecordedFiles);
    std::string detail = path + " " + PresenceText(facts) + content.Text;
    if (content.State == ItemState::Drifted)
        return MakeItem("library", name, ItemState::Drifted, detail);
    return MakeItem("library", name, ItemState::Unchecked,
                    detail + "; its registration not checked: only the library knows what it writes");
}
