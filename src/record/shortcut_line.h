// The shortcut lines of an installation record, read apart into their
// fifteen fields. No <windows.h> here.
#ifndef TOVREL_RECORD_SHORTCUT_LINE_H
#define TOVREL_RECORD_SHORTCUT_LINE_H

#include <string>

const int ShortcutFieldCount = 15;

// Positions of the fields that say where the link lies, counted from 0.
enum ShortcutField {
    GroupRootField = 0,
    GroupFolderField = 1,
    DescriptionField = 2,
    TargetRootField = 3,
    TargetFolderField = 4,
    TargetFileField = 5,
    WorkingRootField = 7,
    WorkingFolderField = 8
};

struct ShortcutLine {
    std::string Fields[ShortcutFieldCount];
};

// Commas cut the line, the last field takes the rest; each field loses its
// blanks at both ends, and a field the line does not reach is empty.
ShortcutLine ParseShortcutLine(const std::string &line);
// A number as the C runtime's atol reads it: 0 when no digit leads.
long ReadFieldNumber(const std::string &field);
// A field that may name a string token of the INF, whose text the record
// does not keep.
bool HoldsStringToken(const std::string &field);
// The directory with a backslash at its end, then the part without one
// leading backslash, then a backslash again. An empty part changes nothing.
std::string AppendDirectoryPart(const std::string &directory, const std::string &part);

#endif
