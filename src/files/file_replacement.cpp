#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "files/file_replacement.h"
#include "files/file_spec.h"
#include "inf/os_version.h"
#include "support/handles.h"

namespace {

const char NewFileSuffix[] = ".new_file";
const char DeleteSuffix[] = ".delete_on_reboot";
// Room that the first read of the RENAME section gives its existing lines,
// and the most it grows to: a section that never fits is not rewritten.
const size_t RenameSectionSlack = 1024;
const size_t RenameSectionMost = 16 * 1024 * 1024;

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

// The RENAME section of the profile at path, read into a buffer that also has
// room for extra more characters and two NULs behind its lines. Sets used to
// the offset of the list's closing NUL; false if the section never fitted.
bool ReadRenameSection(const char *path, size_t extra, std::vector<char> &buffer, DWORD &used)
{
    // A buffer too small gives size - 2; read again until the section and
    // the new line fit.
    for (size_t size = extra + RenameSectionSlack; size <= RenameSectionMost; size *= 2) {
        buffer.assign(size, 0);
        used = GetPrivateProfileSectionA("RENAME", buffer.data(), static_cast<DWORD>(size), path);
        if (used + 2 < size && used + extra + 2 <= size)
            return true;
    }
    return false;
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

    CFileSpec wininit;
    wininit.Resolve(FileSpecWindows);
    wininit.SetFileName("WININIT.INI");
    if (!wininit.Fits())
        return;
    CBoundedString path(wininit.FullPath());

    std::vector<char> buffer;
    DWORD used = 0;
    if (!ReadRenameSection(path, entry.size(), buffer, used))
        return;
    std::memcpy(buffer.data() + used, entry.c_str(), entry.size() + 1);
    buffer[used + entry.size() + 1] = 0;
    WritePrivateProfileSectionA("RENAME", buffer.data(), path);
}

int CPrinterInf::InstallFile(const char *source, const char *target)
{
    if (!CopyFileA(source, target, TRUE) && GetLastError() == ERROR_FILE_EXISTS) {
        CFileVersion query;
        int newer = 0;
        if (!query.CompareVersions(source, target, &newer))
            newer = query.CompareFileTimes(source, target);
        if (newer > 0 && !CopyFileA(source, target, FALSE)) {
            // The target cannot be overwritten: it is in use.
            std::string pending = WithSuffix(target, NewFileSuffix);
            COsVersion os;
            if (os.Family == COsVersion::FamilyWindowsNt) {
                // A busy file can be renamed: the new content takes its name
                // now, and only the old one waits for the restart. A swap
                // whose names do not fit could stop half-way with no file
                // under the target's name, so it is not begun.
                std::string old = WithSuffix(target, DeleteSuffix);
                if (old.size() < MAX_PATH && pending.size() < MAX_PATH) {
                    CopyFileA(source, pending.c_str(), FALSE);
                    MoveFileExA(target, old.c_str(), 0);
                    MoveFileA(pending.c_str(), target);
                    MoveFileExA(old.c_str(), NULL, MOVEFILE_DELAY_UNTIL_REBOOT);
                }
            } else if (pending.size() < MAX_PATH) {
                // A restart cannot finish what a name too long for the
                // system would leave: nothing is scheduled then.
                CopyFileA(source, pending.c_str(), FALSE);
                ScheduleRenameAtRestart(target);
                RebootRequired = true;
            }
        }
    }
    LogUninstall("files", target, "1");
    return 1;
}
