#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "files/file_replacement.h"
#include "files/file_spec.h"
#include "files/interruption_points.h"
#include "files/pending_renames.h"
#include "files/staged_copy.h"
#include "inf/os_version.h"
#include "support/handles.h"

namespace {

const char NewFileSuffix[] = ".new_file";
const char DeleteSuffix[] = ".delete_on_reboot";

// Opens for attributes only, with no sharing, the way all three queries do.
HANDLE OpenForQuery(const char *path)
{
    return CreateFileA(path, 0, 0, NULL, OPEN_EXISTING, 0, NULL);
}

bool ReadFileVersion(const char *path, unsigned long long &version)
{
    DWORD ignored = 0;
    DWORD size = GetFileVersionInfoSizeA(path, &ignored);
    if (!size)
        return false;
    std::vector<char> data(size);
    if (!GetFileVersionInfoA(path, 0, size, data.data()))
        return false;
    VS_FIXEDFILEINFO *info = NULL;
    UINT length = 0;
    if (!VerQueryValueA(data.data(), "\\", reinterpret_cast<void **>(&info), &length) || !info)
        return false;
    version = (static_cast<unsigned long long>(info->dwFileVersionMS) << 32) | info->dwFileVersionLS;
    return true;
}

FILETIME LastWriteTime(const char *path)
{
    FILETIME time = {0, 0};
    CFileHandle file(OpenForQuery(path));
    BY_HANDLE_FILE_INFORMATION info;
    if (file.IsValid() && GetFileInformationByHandle(file.Get(), &info))
        time = info.ftLastWriteTime;
    return time;
}

// Whole, however long: a name cut to fit would be some other file's.
std::string WithSuffix(const char *path, const char *suffix) { return std::string(path) + suffix; }

// Newer by version where both files have one, else by last-write time.
bool IsNewer(const char *source, const char *target)
{
    CFileVersion query;
    int newer = 0;
    if (!query.CompareVersions(source, target, &newer))
        newer = query.CompareFileTimes(source, target);
    return newer > 0;
}

// Whether the system's copy could write over the target now: not when
// another handle refuses writers (a loaded library) or the file is
// read-only. Such a target is treated as busy.
bool CanOverwrite(const char *target)
{
    CFileHandle probe(CreateFileA(target, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL, OPEN_EXISTING, 0,
                                  NULL));
    return probe.IsValid();
}

enum CPlacement { Placed, NotPlaced, FoundThere };

// A target that was not there goes into place without replacing anything.
// One that turned up meanwhile is left to the decision, with its copy made.
CPlacement PlaceNewFile(const char *source, const char *target, CStagedFile &staged)
{
    if (!StageCopy(source, target, staged))
        return NotPlaced;
    if (MoveStaged(staged, target, false))
        return Placed;
    DWORD error = GetLastError();
    if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS)
        return FoundThere;
    DiscardStaged(staged);
    return NotPlaced;
}

}  // namespace

int CFileVersion::CompareVersions(const char *first, const char *second, int *result)
{
    if (!first || !*first || !second || !*second || !result)
        return 0;
    unsigned long long a = 0, b = 0;
    if (!ReadFileVersion(first, a) || !ReadFileVersion(second, b))
        return 0;
    *result = a > b ? 1 : (a < b ? -1 : 0);
    return 1;
}

int CFileVersion::CompareFileTimes(const char *first, const char *second)
{
    FILETIME a = LastWriteTime(first), b = LastWriteTime(second);
    return CompareFileTime(&a, &b);
}

// Windows 9x replaces the files listed in WININIT.INI's RENAME section at its
// next start; the section is rewritten whole with the new line last. Its size
// is the section's own: the file's size says nothing while the system holds
// the file open or has profile writes still cached.
void CPrinterInf::ScheduleRenameAtRestart(const char *target)
{
    std::string entry = std::string(target) + "=" + WithSuffix(target, NewFileSuffix);
    std::string path = WininitPath();
    std::vector<char> buffer;
    DWORD used = 0;
    if (path.empty() || !ReadRenameSection(path.c_str(), entry.size(), buffer, used))
        return;
    std::memcpy(buffer.data() + used, entry.c_str(), entry.size() + 1);
    buffer[used + entry.size() + 1] = 0;
    WritePrivateProfileSectionA("RENAME", buffer.data(), path.c_str());
}

// The target is never written in place: whatever replaces or creates it is
// staged whole beside it first, so that a run stopped at any moment leaves
// either the old file or the new one under its name.
int CPrinterInf::InstallFile(const char *source, const char *target)
{
    TargetDirectories.Clear(target);
    CStagedFile staged;
    CPlacement placement = TargetDirectories.Lists(target) ? FoundThere : PlaceNewFile(source, target, staged);
    if (placement == Placed)
        TargetDirectories.Placed(target);
    else if (placement == FoundThere)
        ReplaceIfNewer(source, target, staged);
    LogUninstall("files", target, "1");
    return 1;
}

// Version, then time; an older or equal source leaves the target alone. A
// copy staged already for a target that turned up meanwhile is used.
void CPrinterInf::ReplaceIfNewer(const char *source, const char *target, CStagedFile &staged)
{
    bool newer = IsNewer(source, target);
    if (!newer && !staged.Path.empty())
        DiscardStaged(staged);
    if (!newer || (staged.Path.empty() && !StageCopy(source, target, staged)))
        return;
    if (!CanOverwrite(target) || !MoveStaged(staged, target, true))
        ReplaceBusyFile(staged, target);
}

// The target cannot be replaced now: it is in use. On NT a busy file can
// still be renamed, so the new content takes its name at once and only the
// old one waits for the restart; the 9x family renames it at its next start.
// The new copy is complete under ".new_file" before anything names it.
void CPrinterInf::ReplaceBusyFile(const CStagedFile &staged, const char *target)
{
    bool nt = COsVersion().Family == COsVersion::FamilyWindowsNt;
    std::string pending = WithSuffix(target, NewFileSuffix), old = WithSuffix(target, DeleteSuffix);
    // A swap whose names do not fit could stop half-way with no file under
    // the target's name, and a restart cannot finish what such a name would
    // leave: neither is begun.
    bool fits = pending.size() < MAX_PATH && (!nt || old.size() < MAX_PATH);
    if (!fits || !MoveStaged(staged, pending.c_str(), true)) {
        DiscardStaged(staged);
        return;
    }
    InterruptionPoint(InterruptPending, target);
    if (nt) {
        // Scheduled first: a run stopped right after the move still has the
        // old content go at the restart.
        MoveFileExA(old.c_str(), NULL, MOVEFILE_DELAY_UNTIL_REBOOT);
        MoveFileExA(target, old.c_str(), 0);
        MoveFileA(pending.c_str(), target);
    } else {
        ScheduleRenameAtRestart(target);
        RebootRequired = true;
    }
}
