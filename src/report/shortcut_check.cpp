#include "record/current_user.h"
#include "record/shortcut_place.h"
#include "record/text_compare.h"
#include "report/file_facts.h"
#include "report/link_target.h"
#include "report/shortcut_check.h"

static const char Kind[] = "shortcut";

// Directories compare with or without the backslash at their end.
static bool SameDirectory(std::string a, std::string b)
{
    for (std::string *text : {&a, &b})
        if (!text->empty() && text->back() == '\\')
            text->pop_back();
    return EqualNoCase(a, b);
}

static Verdict CompareLink(const std::string &path, const ShortcutPlace &expected)
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
    ShortcutPlace expected;
    PlaceLookup lookup = PlaceOfShortcut(ParseShortcutLine(text), expected);
    if (lookup == PlaceLookup::NoLink)
        return MakeItem(Kind, text, ItemState::Held, "no description: the install makes no link");
    if (lookup == PlaceLookup::Unknowable)
        return MakeItem(Kind, text, ItemState::Unchecked, "names a string token or directory the record does not keep");
    Verdict verdict = CompareLink(expected.Link, expected);
    return MakeItem(Kind, text, verdict.State, verdict.Text + (expected.InProfile ? InUserProfile() : ""));
}
