#include <windows.h>

#include "record/system_family.h"
#include "uninstall/restart_delete.h"
#include "uninstall/windows_error.h"

static const char DeleteTarget[] = "NUL=";

static bool AddToWininit(const std::string &path, std::string &failure)
{
    std::string wininit = WininitLocation();
    std::vector<std::string> lines;
    if (wininit.empty() || !ReadRenameLines(wininit, lines)) {
        failure = "WININIT.INI cannot be read whole";
        return false;
    }
    lines.push_back(DeleteTarget + path);
    std::string section;
    for (const std::string &line : lines)
        section += line + '\0';
    section += '\0';
    if (WritePrivateProfileSectionA(RenameSection, section.c_str(), wininit.c_str()))
        return true;
    failure = "WININIT.INI cannot be written, " + LastErrorText();
    return false;
}

static bool AddToDelayedMoves(const std::string &path, std::string &failure)
{
    if (MoveFileExA(path.c_str(), NULL, MOVEFILE_DELAY_UNTIL_REBOOT))
        return true;
    failure = "the delayed-move list refuses it, " + LastErrorText();
    return false;
}

bool DeleteAtRestart(const std::string &path, const PendingRenames &pending, std::string &how, std::string &failure)
{
    bool nt = IsNtFamily();
    how = nt ? "PendingFileRenameOperations" : "WININIT.INI";
    if (IsPendingDeletion(pending, path))
        return true;
    if (!(nt ? AddToDelayedMoves(path, failure) : AddToWininit(path, failure)))
        return false;
    if (IsPendingDeletion(ReadPendingRenames(), path))
        return true;
    failure = "added to " + how + ", which does not name it when read back";
    return false;
}
