#include "files/staged_copy.h"

#include <windows.h>

#include <vector>

#include "files/interruption_points.h"
#include "files/path_parts.h"
#include "files/temp_names.h"
#include "inf/os_version.h"
#include "support/handles.h"

namespace {

const DWORD CopyChunk = 64 * 1024;
// A name taken already, by a link or a file nobody should have put there,
// is passed over for another; this many in a row means someone is trying.
const int NameAttempts = 8;
// What a copy keeps of the source's attributes, as the system's copy does.
const DWORD CopiedAttributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

bool CopyContent(HANDLE from, HANDLE to, const char *target)
{
    std::vector<char> buffer(CopyChunk);
    bool first = true;
    for (;;) {
        DWORD read = 0, written = 0;
        if (!ReadFile(from, buffer.data(), CopyChunk, &read, NULL))
            return false;
        if (!read)
            return true;
        if (!WriteFile(to, buffer.data(), read, &written, NULL) || written != read)
            return false;
        if (first)
            InterruptionPoint(InterruptWriting, target);
        first = false;
    }
}

// A new file under a fresh temporary name beside target, never one that is
// there already; its identity goes into staged.
HANDLE CreateStagedFile(const char *target, DWORD attributes, CStagedFile &staged)
{
    std::string directory(target, FileNameOffset(target));
    DWORD created = (attributes & CopiedAttributes) ? (attributes & CopiedAttributes) : FILE_ATTRIBUTE_NORMAL;
    for (int attempt = 0; attempt < NameAttempts; ++attempt) {
        staged.Path = TempName(directory, StagedFileSuffix);
        if (staged.Path.size() >= MAX_PATH)
            return INVALID_HANDLE_VALUE;
        CFileHandle file(CreateFileA(staged.Path.c_str(), GENERIC_WRITE | DELETE, 0, NULL, CREATE_NEW,
                                     created | FILE_FLAG_SEQUENTIAL_SCAN, NULL));
        if (!file.IsValid() && GetLastError() == ERROR_FILE_EXISTS)
            continue;
        if (file.IsValid() && IdentityOf(file.Get(), staged.Identity))
            return file.Release();
        return INVALID_HANDLE_VALUE;
    }
    return INVALID_HANDLE_VALUE;
}

bool IsNtFamily() { return COsVersion().Family == COsVersion::FamilyWindowsNt; }

}  // namespace

bool StageCopy(const char *source, const char *target, CStagedFile &staged)
{
    CFileHandle from(CreateFileA(source, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, NULL,
                                 OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, NULL));
    CFileStamp stamp;
    if (!from.IsValid() || !StampOf(from.Get(), stamp))
        return false;
    CFileHandle to(CreateStagedFile(target, stamp.Attributes, staged));
    if (!to.IsValid())
        return false;
    // Flushed before it may take the target's name: a power cut must not
    // leave an empty or partial file there.
    if (CopyContent(from.Get(), to.Get(), target) &&
        SetFileTime(to.Get(), &stamp.Created, &stamp.Accessed, &stamp.Written) && FlushFileBuffers(to.Get()))
        return true;
    if (!DeleteThroughHandle(to.Get())) {
        to.Reset();
        DeleteFileA(staged.Path.c_str());
    }
    return false;
}

bool MoveStaged(const CStagedFile &staged, const char *target, bool replace)
{
    if (IsNtFamily())
        return MoveFileExA(staged.Path.c_str(), target, replace ? MOVEFILE_REPLACE_EXISTING : 0) != 0;
    // The window in which a kill leaves no file under the target's name is
    // these two calls; the next run then installs the target anew.
    if (replace)
        DeleteFileA(target);
    return MoveFileA(staged.Path.c_str(), target) != 0;
}

void DiscardStaged(const CStagedFile &staged) { DeleteIfSame(staged.Path.c_str(), staged.Identity); }
