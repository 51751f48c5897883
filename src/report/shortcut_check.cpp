#include "report/current_user.h"
#include "report/directory_ids.h"
#include "report/file_facts.h"
#include "report/link_target.h"
#include "report/shortcut_check.h"
#include "report/shortcut_line.h"
#include "report/text_compare.h"

static const char Kind[] = "shortcut";
static const char LinkExtension[] = ".lnk";

// What the line asks of its link, worked out on this machine.
struct ExpectedLink {
    std::string Group, Target, WorkingDirectory;
    bool InProfile = false;
};

// The directory of an id field; false when the record cannot tell it.
static bool FieldDirectory(const std::string &field, std::string &directory)
{
    directory.clear();
    std::string path;
    DirectoryLookup lookup = ResolveInfDirectory(ReadFieldNumber(field), path);
    if (lookup == DirectoryLookup::Unknowable)
        return false;
    if (lookup == DirectoryLookup::Found)
        directory = path;
    return true;
}

// A root with no path puts the group below the current user's Programs folder.
static bool GroupDirectory(const ShortcutLine &line, ExpectedLink &link)
{
    std::string root;
    const std::string &rootField = line.Fields[GroupRootField];
    if (!rootField.empty() && !FieldDirectory(rootField, root))
        return false;
    link.InProfile = root.empty() || InfDirectoryIsPerUser(ReadFieldNumber(rootField));
    if (root.empty())
        root = ProgramsDirectory();
    link.Group = AppendDirectoryPart(root, line.Fields[GroupFolderField]);
    return true;
}

// The target's full path, empty for a link without one; and the working
// directory, which without a root of its own is the target's.
static bool TargetAndWorkingDirectory(const ShortcutLine &line, ExpectedLink &link)
{
    std::string root;
    if (!line.Fields[TargetRootField].empty()) {
        if (!FieldDirectory(line.Fields[TargetRootField], root))
            return false;
        link.WorkingDirectory = AppendDirectoryPart(root, line.Fields[TargetFolderField]);
        link.Target = link.WorkingDirectory + line.Fields[TargetFileField];
    }
    if (line.Fields[WorkingRootField].empty())
        return true;
    if (!FieldDirectory(line.Fields[WorkingRootField], root))
        return false;
    link.WorkingDirectory = AppendDirectoryPart(root, line.Fields[WorkingFolderField]);
    return true;
}

static bool NamesToken(const ShortcutLine &line)
{
    for (int field : {GroupFolderField, DescriptionField, TargetFolderField, TargetFileField, WorkingFolderField})
        if (HoldsStringToken(line.Fields[field]))
            return true;
    return false;
}

// Directories compare with or without the backslash at their end.
static bool SameDirectory(std::string a, std::string b)
{
    for (std::string *text : {&a, &b})
        if (!text->empty() && text->back() == '\\')
            text->pop_back();
    return EqualNoCase(a, b);
}

static Verdict CompareLink(const std::string &path, const ExpectedLink &expected)
{
    LinkFacts found;
    std::string failure;
    if (!FileIsPresent(path, nullptr))
        return {ItemState::Drifted, path + " missing"};
    if (!ReadLink(path, found, failure))
        return {ItemState::Drifted, path + ": " + failure};
    if (!EqualNoCase(found.Target, expected.Target))
        return {ItemState::Drifted,
                path + " points to \"" + found.Target + "\", the line gives \"" + expected.Target + "\""};
    if (!SameDirectory(found.WorkingDirectory, expected.WorkingDirectory))
        return {ItemState::Drifted, path + " starts in \"" + found.WorkingDirectory + "\", the line gives \""
                                        + expected.WorkingDirectory + "\""};
    std::string start = expected.WorkingDirectory.empty() ? "" : ", starts in " + expected.WorkingDirectory;
    return {ItemState::Held, path + " -> " + (expected.Target.empty() ? "(no target)" : expected.Target) + start};
}

ReportItem CheckShortcutLine(const std::string &text)
{
    ShortcutLine line = ParseShortcutLine(text);
    if (line.Fields[DescriptionField].empty())
        return MakeItem(Kind, text, ItemState::Held, "no description: the install makes no link");
    ExpectedLink expected;
    if (NamesToken(line) || !GroupDirectory(line, expected) || !TargetAndWorkingDirectory(line, expected))
        return MakeItem(Kind, text, ItemState::Unchecked, "names a string token or directory the record does not keep");
    Verdict verdict = CompareLink(expected.Group + line.Fields[DescriptionField] + LinkExtension, expected);
    return MakeItem(Kind, text, verdict.State, verdict.Text + (expected.InProfile ? InUserProfile() : ""));
}
