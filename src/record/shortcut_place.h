// Where a shortcut line of a record put its link, worked out on this
// machine as the install works it out.
#ifndef TOVREL_RECORD_SHORTCUT_PLACE_H
#define TOVREL_RECORD_SHORTCUT_PLACE_H

#include <string>

#include "record/shortcut_line.h"

struct ShortcutPlace {
    std::string Group;             // the group folder, with a backslash at its end
    std::string Link;              // the link file in it
    std::string Target;            // empty for a link without one
    std::string WorkingDirectory;  // without a root of its own, the target's
    bool InProfile = false;        // the group lies in the current user's profile
};

enum class PlaceLookup {
    Found,
    NoLink,     // no description: the install makes no link
    Unknowable  // a string token or a directory that the record does not keep
};

PlaceLookup PlaceOfShortcut(const ShortcutLine &line, ShortcutPlace &place);

#endif
