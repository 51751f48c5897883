#include "report/file_content.h"

#include "record/text_compare.h"
#include "report/baseline_fields.h"

static const char NoBaseline[] = "; content not compared: no baseline";

static std::string JoinChanges(const std::vector<std::string> &changes)
{
    std::string text;
    for (const std::string &change : changes)
        text += (text.empty() ? "" : ", ") + change;
    return text;
}

// Only two digests that were both read can differ.
static bool OtherContent(const FileFacts &a, const FileFacts &b)
{
    return !a.Sha256.empty() && !b.Sha256.empty() && a.Sha256 != b.Sha256;
}

static std::string Changes(const FileFacts &now, const FileFacts &was)
{
    std::vector<std::string> changes;
    if (now.Size != was.Size)
        changes.push_back("size was " + std::to_string(was.Size) + " bytes");
    if (now.Version != was.Version)
        changes.push_back(was.Version.empty() ? "it had no version" : "version was " + was.Version);
    if (OtherContent(now, was))
        changes.push_back("other content");
    return JoinChanges(changes);
}

static Verdict AgainstBaseline(const std::string &path, const FileFacts &now, const CBaseline &baseline)
{
    BaselineFields fields;
    FileFacts was;
    EntryState entry = baseline.Entry(BaselineFiles, path, fields);
    bool readable = entry == EntryState::Found && FileOfFields(fields, was);
    std::string changes = readable ? Changes(now, was) : std::string();
    // Same size and version say nothing of bytes that were not both read.
    if (readable && changes.empty() && now.Sha256.empty())
        return {ItemState::Unchecked, "; its bytes cannot be read, error " + std::to_string(now.ReadError)};
    if (readable && changes.empty() && was.Sha256.empty())
        return {ItemState::Unchecked, "; the baseline could not read its bytes"};
    return BaselineVerdict(entry, readable, changes);
}

// The first recorded copy of the same name that differs from this one.
static std::string NamesakeDifference(const std::string &path, const FileFacts &facts,
                                      const std::vector<NamedValue> &recordedFiles)
{
    for (const NamedValue &other : recordedFiles) {
        if (EqualNoCase(other.Name, path) || !EqualNoCase(FileNameOf(other.Name), FileNameOf(path)))
            continue;
        FileFacts copy = ReadFileFacts(other.Name, true);
        if (copy.Present && !Changes(facts, copy).empty())
            return "; its namesake " + other.Name + " differs: " + PresenceText(copy)
                   + (OtherContent(copy, facts) ? ", other content" : "");
    }
    return std::string();
}

Verdict JudgeContent(const std::string &path, const FileFacts &facts, const CBaseline &baseline,
                     const std::vector<NamedValue> &recordedFiles)
{
    if (baseline.Exists())
        return AgainstBaseline(path, facts, baseline);
    return {ItemState::Unchecked, NoBaseline + NamesakeDifference(path, facts, recordedFiles)};
}
