#include "record/directory_ids.h"
#include "record/shortcut_place.h"

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

// A root with no path puts the group below the current user's Programs folder.
static bool GroupDirectory(const ShortcutLine &line, ShortcutPlace &place)
{
    std::string root;
    const std::string &rootField = line.Fields[GroupRootField];
    if (!rootField.empty() && !FieldDirectory(rootField, root))
        return false;
    place.InProfile = root.empty() || InfDirectoryIsPerUser(ReadFieldNumber(rootField));
    if (root.empty())
        root = ProgramsDirectory();
    place.Group = AppendDirectoryPart(root, line.Fields[GroupFolderField]);
    return true;
}

static bool TargetAndWorkingDirectory(const ShortcutLine &line, ShortcutPlace &place)
{
    std::string root;
    if (!line.Fields[TargetRootField].empty()) {
        if (!FieldDirectory(line.Fields[TargetRootField], root))
            return false;
        place.WorkingDirectory = AppendDirectoryPart(root, line.Fields[TargetFolderField]);
        place.Target = place.WorkingDirectory + line.Fields[TargetFileField];
    }
    if (line.Fields[WorkingRootField].empty())
        return true;
    if (!FieldDirectory(line.Fields[WorkingRootField], root))
        return false;
    place.WorkingDirectory = AppendDirectoryPart(root, line.Fields[WorkingFolderField]);
    return true;
}

static bool NamesToken(const ShortcutLine &line)
{
    for (int field : {GroupFolderField, DescriptionField, TargetFolderField, TargetFileField, WorkingFolderField})
        if (HoldsStringToken(line.Fields[field]))
            return true;
    return false;
}

PlaceLookup PlaceOfShortcut(const ShortcutLine &line, ShortcutPlace &place)
{
    if (line.Fields[DescriptionField].empty())
        return PlaceLookup::NoLink;
    if (NamesToken(line) || !GroupDirectory(line, place) || !TargetAndWorkingDirectory(line, place))
        return PlaceLookup::Unknowable;
    place.Link = place.Group + line.Fields[DescriptionField] + LinkExtension;
    return PlaceLookup::Found;
}
