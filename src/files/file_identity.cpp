#include "files/file_identity.h"

#include "support/handles.h"

namespace {

// The native call behind deletion through a handle, bound at run time: the
// 9x family has none, and there a name is deleted by name after its check.
struct CIoStatus {
    void *Status;
    ULONG_PTR Information;
};
struct CBasicInformation {
    LARGE_INTEGER CreationTime, LastAccessTime, LastWriteTime, ChangeTime;  // zero: unchanged
    DWORD FileAttributes;
};
typedef LONG(WINAPI *SetInformationProc)(HANDLE, CIoStatus *, void *, ULONG, int);
const int FileBasicInformationClass = 4;
const int FileDispositionInformationClass = 13;

SetInformationProc SetInformation()
{
    static SetInformationProc proc = reinterpret_cast<SetInformationProc>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("ntdll"), "NtSetInformationFile")));
    return proc;
}

// A read-only file refuses to be marked for deletion.
void ClearReadOnly(SetInformationProc set, HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION info;
    if (!GetFileInformationByHandle(file, &info) || !(info.dwFileAttributes & FILE_ATTRIBUTE_READONLY))
        return;
    CBasicInformation basic = {};
    basic.FileAttributes = info.dwFileAttributes & ~FILE_ATTRIBUTE_READONLY;
    if (!basic.FileAttributes)
        basic.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    CIoStatus io;
    set(file, &io, &basic, sizeof basic, FileBasicInformationClass);
}

const DWORD DirectoryFlags = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;

HANDLE OpenDirectoryForDeletion(const char *path)
{
    return CreateFileA(path, DELETE | FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL, OPEN_EXISTING,
                       DirectoryFlags, NULL);
}

}  // namespace

// Through the handle; where the system has no such call, by name once the
// handle is closed.
static bool DeleteOpenFile(CFileHandle &file, const char *path)
{
    if (DeleteThroughHandle(file.Get()))
        return true;
    file.Reset();
    SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL);
    return DeleteFileA(path) != 0;
}

bool IdentityOf(HANDLE file, CFileIdentity &identity)
{
    BY_HANDLE_FILE_INFORMATION info;
    if (!GetFileInformationByHandle(file, &info))
        return false;
    identity.Volume = info.dwVolumeSerialNumber;
    identity.IndexHigh = info.nFileIndexHigh;
    identity.IndexLow = info.nFileIndexLow;
    return true;
}

bool SameIdentity(const CFileIdentity &a, const CFileIdentity &b)
{
    return a.Volume == b.Volume && a.IndexHigh == b.IndexHigh && a.IndexLow == b.IndexLow;
}

HANDLE OpenForDeletion(const char *path)
{
    return CreateFileA(path, DELETE | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, NULL, OPEN_EXISTING,
                       FILE_FLAG_OPEN_REPARSE_POINT, NULL);
}

HANDLE HoldDirectory(const char *path)
{
    return CreateFileA(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL, OPEN_EXISTING,
                       DirectoryFlags, NULL);
}

// A holder shares everything but deletion, so that an open for deletion is
// what it refuses.
bool IsDirectoryHeld(const char *path)
{
    CFileHandle probe(OpenDirectoryForDeletion(path));
    return !probe.IsValid() && GetLastError() == ERROR_SHARING_VIOLATION;
}

bool RemoveDirectoryIfSame(const char *path, const CFileIdentity &identity)
{
    CFileHandle directory(OpenDirectoryForDeletion(path));
    CFileIdentity found;
    if (directory.IsValid() && IdentityOf(directory.Get(), found) && SameIdentity(found, identity))
        DeleteThroughHandle(directory.Get());
    else if (!directory.IsValid() && !SetInformation())
        RemoveDirectoryA(path);
    directory.Reset();
    return GetFileAttributesA(path) == INVALID_FILE_ATTRIBUTES;
}

bool DeleteThroughHandle(HANDLE file)
{
    SetInformationProc set = SetInformation();
    if (!set)
        return false;
    ClearReadOnly(set, file);
    BOOLEAN dispose = TRUE;
    CIoStatus io;
    return set(file, &io, &dispose, sizeof dispose, FileDispositionInformationClass) == 0;
}

bool DeleteIfSame(const char *path, const CFileIdentity &identity)
{
    CFileHandle file(OpenForDeletion(path));
    CFileIdentity found;
    if (!file.IsValid() || !IdentityOf(file.Get(), found) || !SameIdentity(found, identity))
        return false;
    return DeleteOpenFile(file, path);
}

bool DeleteLeftover(const char *path)
{
    CFileHandle file(OpenForDeletion(path));
    return file.IsValid() && DeleteOpenFile(file, path);
}
