#include "uninstall/shortcut_removal.h"

#include "record/current_user.h"
#include "record/product_keys.h"
#include "record/shortcut_place.h"
#include "support/handles.h"
#include "uninstall/path_checks.h"
#include "uninstall/windows_error.h"

static const char Kind[] = "shortcut";

static bool IsThere(const std::string &path)
{
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Whether a folder holds anything but its own two entries.
static bool IsEmptyFolder(const std::string &folder)
{
    WIN32_FIND_DATAA found;
    CFindHandle find(FindFirstFileA((folder + "*").c_str(), &found));
    if (!find.IsValid())
        return false;
    do
        if (std::string(found.cFileName) != "." && std::string(found.cFileName) != "..")
            return false;
    while (FindNextFileA(find.Get(), &found));
    return true;
}

// The folder of the line's group goes once it is empty; a group that is a
// root of its own (no folder field) is never the line's.
static std::string RemoveGroupIfEmpty(const ShortcutLine &line, const std::string &group)
{
    if (line.Fields[GroupFolderField].empty() || !IsThere(group))
        return std::string();
    if (!IsEmptyFolder(group))
        return "; group folder " + group + " kept: it holds more";
    if (!RemoveDirectoryA(group.c_str()) && IsThere(group))
        return "; group folder " + group + " kept: " + LastErrorText();
    return IsThere(group) ? "; group folder " + group + " still there after its removal"
                          : "; group folder " + group + " removed, empty";
}

static UninstallItem DeleteLink(const std::string &subject, const ShortcutLine &line, const ShortcutPlace &place,
                                bool whatIf)
{
    if (!IsThere(place.Link))
        return MakeItem(Kind, subject, Outcome::Absent, "no " + place.Link + RemoveGroupIfEmpty(line, place.Group));
    if (whatIf)
        return MakeItem(Kind, subject, Outcome::Planned, place.Link);
    std::string failure = DeleteFileA(place.Link.c_str()) ? "still there after its deletion" : LastErrorText();
    if (IsThere(place.Link))
        return MakeItem(Kind, subject, Outcome::Failed, place.Link + ": " + failure);
    return MakeItem(Kind, subject, Outcome::Removed, place.Link + RemoveGroupIfEmpty(line, place.Group));
}

// The install makes no link of a line whose group or description would
// lead out of its folder: such a line is none of the install's.
static std::string RefusalOfLine(const ShortcutLine &line, const ShortcutPlace &place)
{
    const std::string &group = line.Fields[GroupFolderField];
    std::string why = group.empty() ? std::string() : RefusalOfName(group);
    if (why.empty())
        why = RefusalOfName(line.Fields[DescriptionField]);
    if (why.empty())
        why = RefusalOfPath(place.Link);
    return why;
}

static UninstallItem RemoveLine(const CUninstallRun &run, const NamedValue &value)
{
    if (!IsTextValue(value))
        return RefusedValueType(Kind, value);
    ShortcutLine line = ParseShortcutLine(value.Name);
    ShortcutPlace place;
    PlaceLookup lookup = PlaceOfShortcut(line, place);
    if (lookup == PlaceLookup::NoLink)
        return MakeItem(Kind, value.Name, Outcome::Absent, "no description: the install made no link");
    if (lookup == PlaceLookup::Unknowable)
        return MakeItem(Kind, value.Name, Outcome::Refused,
                        "names a string token or directory the record does not keep: where its link lies is not known");
    std::string why = RefusalOfLine(line, place), by;
    if (!why.empty())
        return MakeItem(Kind, value.Name, Outcome::Refused, "\"" + place.Link + "\": " + why);
    Claim claim = run.Claims().Of(ClaimKind::Link, place.Link, by);
    UninstallItem item = claim != Claim::Free
                             ? MakeItem(Kind, value.Name, claim == Claim::Claimed ? Outcome::Shared : Outcome::Failed, by)
                             : DeleteLink(value.Name, line, place, run.WhatIf());
    if (place.InProfile)
        item.Detail += InUserProfile();
    return item;
}

void RemoveShortcuts(CUninstallRun &run)
{
    for (const NamedValue &value : run.Record().Shortcuts)
        run.Settle(RemoveLine(run, value), RecordShortcuts, value.Name);
}
