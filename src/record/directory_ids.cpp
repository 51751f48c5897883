#include <windows.h>
#include <shlobj.h>

#include "record/directory_ids.h"
#include "record/directory_sources.h"

namespace {

typedef DirectorySource Source;

struct DirectoryRow {
    long InfId;
    Source From;
    int Folder;  // the shell folder's CSIDL, for Source::Folder
};

// The directory of the host program (1) and the model's own web folder
// (66004) are those of the installing process and of a manufacturer name
// that the record does not keep.
const DirectoryRow DirectoryTable[] = {
    {1, Source::Unknowable, 0}, {2, Source::Temp, 0}, {10, Source::Windows, 0},
    {11, Source::System, 0}, {14, Source::Folder, CSIDL_CONTROLS}, {15, Source::Folder, CSIDL_PRINTERS},
    {17, Source::DevicePath, 0}, {20, Source::Folder, CSIDL_FONTS}, {23, Source::Color, 0},
    {50, Source::WindowsSystem, 0}, {52, Source::DriverDir, 0}, {55, Source::ProcessorDir, 0},
    {66000, Source::DriverDir, 0}, {66001, Source::ProcessorDir, 0}, {66002, Source::System, 0},
    {66003, Source::Color, 0}, {66004, Source::Unknowable, 0}, {66600, Source::Web, 0},
    {66601, Source::WebPrinters, 0}, {66602, Source::DriverDir9x, 0}, {66603, Source::ProcessorDir, 0},
    {66650, Source::Folder, CSIDL_DESKTOP}, {66651, Source::Folder, CSIDL_COMMON_DESKTOPDIRECTORY},
    {66652, Source::Folder, CSIDL_DESKTOPDIRECTORY}, {66653, Source::Folder, CSIDL_FAVORITES},
    {66654, Source::Folder, CSIDL_APPDATA}, {66655, Source::Folder, CSIDL_INTERNET_CACHE},
    {66656, Source::Folder, CSIDL_COOKIES}, {66657, Source::Folder, CSIDL_HISTORY},
    {66658, Source::Folder, CSIDL_NETHOOD}, {66659, Source::Folder, CSIDL_PERSONAL},
    {66660, Source::Folder, CSIDL_PRINTHOOD}, {66661, Source::Folder, CSIDL_PROGRAMS},
    {66662, Source::Folder, CSIDL_COMMON_PROGRAMS}, {66663, Source::Folder, CSIDL_RECENT},
    {66664, Source::Folder, CSIDL_SENDTO}, {66665, Source::Folder, CSIDL_STARTMENU},
    {66666, Source::Folder, CSIDL_STARTUP}, {66667, Source::Folder, CSIDL_ALTSTARTUP},
    {66668, Source::Folder, CSIDL_COMMON_STARTUP}, {66669, Source::Folder, CSIDL_COMMON_ALTSTARTUP},
    {66670, Source::Folder, CSIDL_TEMPLATES}, {66671, Source::Folder, CSIDL_PROGRAM_FILES},
};

}  // namespace

DirectoryLookup ResolveInfDirectory(long infId, std::string &path)
{
    for (const DirectoryRow &row : DirectoryTable) {
        if (row.InfId != infId)
            continue;
        if (row.From == Source::Unknowable)
            return DirectoryLookup::Unknowable;
        path = DirectoryOfSource(row.From, row.Folder);
        return DirectoryLookup::Found;
    }
    return DirectoryLookup::NotKnown;
}

// The shell folders of the table that belong to the machine, not to a profile.
static bool IsMachineFolder(int csidl)
{
    switch (csidl) {
    case CSIDL_CONTROLS: case CSIDL_PRINTERS: case CSIDL_FONTS: case CSIDL_COMMON_DESKTOPDIRECTORY:
    case CSIDL_COMMON_PROGRAMS: case CSIDL_COMMON_STARTUP: case CSIDL_COMMON_ALTSTARTUP: case CSIDL_PROGRAM_FILES:
        return true;
    }
    return false;
}

bool InfDirectoryIsPerUser(long infId)
{
    for (const DirectoryRow &row : DirectoryTable)
        if (row.InfId == infId)
            return row.From == Source::Temp || (row.From == Source::Folder && !IsMachineFolder(row.Folder));
    return false;
}

std::string ProgramsDirectory()
{
    return DirectoryOfSource(Source::Folder, CSIDL_PROGRAMS);
}
