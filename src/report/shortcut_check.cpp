#include "report/directory_ids.h"
#include "report/file_check.h"
#include "report/link_target.h"
#include "report/shortcut_check.h"
#include "report/shortcut_line.h"
#include "report/text_compare.h"

static const char Kind[] = "shortcut";
static const char LinkExtension[] = ".lnk";

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

static bool GroupDirectory(const ShortcutLine &line, std::string &group)
{
    std::string root;
    if (!line.Fields[GroupRootField].empty() && !FieldDirectory(line.Fields[GroupRootField], root))
        return false;
    if (root.empty())
        root = ProgramsDirectory();
    group = AppendDirectoryPart(root, line.Fields[GroupFolderField]);
    return true;
}

// The target's full path, empty text for a link without one.
static bool TargetPath(const ShortcutLine &line, std::string &target)
{
    target.clear();
    if (line.Fields[TargetRootField].empty())
        return true;
    std::string root;
    if (!FieldDirectory(line.Fields[TargetRootField], root))
        return false;
    target = AppendDirectoryPart(root, line.Fields[TargetFolderField]) + line.Fields[TargetFileField];
    return true;
}

static bool NamesToken(const ShortcutLine &line)
{
    for (int field : {GroupFolderField, DescriptionField, TargetFolderField, TargetFileField})
        if (HoldsStringToken(line.Fields[field]))
            return true;
    return false;
}

ReportItem CheckShortcutLine(const std::string &text)
{
    ShortcutLine line = ParseShortcutLine(text);
    if (line.Fields[DescriptionField].empty())
        return MakeItem(Kind, text, ItemState::Held, "no description: the install makes no link");
    std::string group, expected, found;
    if (NamesToken(line) || !GroupDirectory(line, group) || !TargetPath(line, expected))
        return MakeItem(Kind, text, ItemState::Unchecked, "names a string token or directory the record does not keep");
    std::string link = group + line.Fields[DescriptionField] + LinkExtension;
    if (!FileIsPresent(link, nullptr))
        return MakeItem(Kind, text, ItemState::Drifted, link + " missing");
    if (!ReadLinkTarget(link, found))
        return MakeItem(Kind, text, ItemState::Drifted, link + ": " + found);
    if (!EqualNoCase(found, expected))
        return MakeItem(Kind, text, ItemState::Drifted,
                        link + " points to \"" + found + "\", the line gives \"" + expected + "\"");
    return MakeItem(Kind, text, ItemState::Held, link + " -> " + (expected.empty() ? "(no target)" : expected));
}
