#include <windows.h>

#include <new>
#include <vector>

#include "entry/printer_inf.h"
#include "files/file_replacement.h"
#include "files/file_spec.h"
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

CBoundedString WithSuffix(const char *path, const char *suffix)
{
    CBoundedString text(path);
    text.Append(suffix);
    return text;
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

unsigned long long CFileVersion::FileSize(const char *path)
{
    CFileHandle file(OpenForQuery(path));
    if (!file.IsValid())
        return 0;
    DWORD high = 0;
    DWORD low = GetFileSize(file.Get(), &high);
    if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR)
        return 0;
    return (static_cast<unsigned long long>(high) << 32) | low;
}

// Windows 9x replaces the files listed in WININIT.INI's RENAME section at its
// next start; the section is rewritten whole with the new line last.
void CPrinterInf::ScheduleRenameAtRestart(const char *target)
{
    CBoundedString entry(target);
    entry.Append("=");
    entry.Append(target);
    entry.Append(NewFileSuffix);
    size_t length = entry.Length();

    CFileSpec wininit;
    wininit.Resolve(3);
    wininit.SetFileName("WININIT.INI");
    CBoundedString path(wininit.FullPath());

    CFileVersion query;
    // The section cannot hold more than the whole file: room for the old
    // lines, the entry and the closing NULs.
    DWORD size = static_cast<DWORD>(query.FileSize(path)) + static_cast<DWORD>(length) + 22;
    char *buffer = new (std::nothrow) char[size];
    if (!buffer)
        return;
    buffer[0] = 0;
    DWORD used = GetPrivateProfileSectionA("RENAME", buffer, size, path);
    CopyBounded(buffer + used, entry, length + 1);
    buffer[used + length + 1] = 0;
    WritePrivateProfileSectionA("RENAME", buffer, path);
    delete[] buffer;
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
            CBoundedString pending = WithSuffix(target, NewFileSuffix);
            CopyFileA(source, pending, FALSE);
            COsVersion os;
            if (os.Family == COsVersion::FamilyWindowsNt) {
                // A busy file can be renamed: the new content takes its name
                // now, and only the old one waits for the restart.
                CBoundedString old = WithSuffix(target, DeleteSuffix);
                MoveFileExA(target, old, 0);
                MoveFileA(pending, target);
                MoveFileExA(old, NULL, MOVEFILE_DELAY_UNTIL_REBOOT);
            } else {
                ScheduleRenameAtRestart(target);
                RebootRequired = true;
            }
        }
    }
    LogUninstall("files", target, "1");
    return 1;
}
