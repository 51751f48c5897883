#include "files/file_identity.h"

#include "support/handles.h"

namespace {

// The native calls behind the identity and deletion through a handle, bound
// at run time: the 9x family has neither, and there a file's index comes from
// GetFileInformationByHandle and a name is deleted by name after its check.
struct CIoStatus {
    void *Status;
    ULONG_PTR Information;
};
struct CBasicInformation {
    LARGE_INTEGER CreationTime, LastAccessTime, LastWriteTime, ChangeTime;  // zero: unchanged
    DWORD FileAttributes;
};
typedef LONG(WINAPI *FileInformationProc)(HANDLE, CIoStatus *, void *, ULONG, int);
const int FileBasicInformationClass = 4;
const int FileInternalInformationClass = 6;
const int FileDispositionInformationClass = 13;

FileInformationProc NativeCall(const char *name)
{
    return reinterpret_cast<FileInformationProc>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("ntdll"), name)));
}

FileInformationProc SetInformation()
{
    static FileInformationProc proc = NativeCall("NtSetInformationFile");
    return proc;
}

FileInformationProc QueryInformation()
{
    static FileInformationProc proc = NativeCall("NtQueryInformationFile");
    return proc;
}

// One native query of what a handle names; false where there is no such
// call or it refused.
bool QueryNative(HANDLE file, void *out, ULONG size, int informationClass)
{
    CIoStatus io;
    return QueryInformation() && QueryInformation()(file, &io, out, size, informationClass) == 0;
}

// A read-only file refuses to be marked for deletion.
void ClearReadOnly(HANDLE file)
{
    CBasicInformation basic = {};
    CIoStatus io;
    if (!QueryNative(file, &basic, sizeof basic, FileBasicInformationClass) ||
        !(basic.FileAttributes & FILE_ATTRIBUTE_READONLY))
        return;
    CBasicInformation cleared = {};
    cleared.FileAttributes = basic.FileAttributes & ~FILE_ATTRIBUTE_READONLY;
    if (!cleared.FileAttributes)
        cleared.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    SetInformation()(file, &io, &cleared, sizeof cleared, FileBasicInformationClass);
}

const DWORD DirectoryFlags = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;

HANDLE OpenDirectoryForDeletion(const char *path)
{
    return CreateFileA(path, DELETE | FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL, OPEN_EXISTING,
                       DirectoryFlags, NULL);
}

// Through the handle; where the system has no such call, by name once the
// handle is closed.
bool DeleteOpenFile(CFileHandle &file, const char *path)
{
    if (DeleteThroughHandle(file.Get()))
        return true;
    file.Reset();
    SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL);
    return DeleteFileA(path) != 0;
}

}  // namespace

// The index alone, which the native query reads without asking the server;
// GetFileInformationByHandle asks it several times, for the volume's serial
// among others. Every identity compared here is of a file or directory that
// the install made in a directory of its own choosing.
bool IdentityOf(HANDLE file, CFileIdentity &identity)
{
    LARGE_INTEGER index;
    if (QueryNative(file, &index, sizeof index, FileInternalInformationClass)) {
        identity.IndexHigh = static_cast<DWORD>(index.HighPart);
        identity.IndexLow = index.LowPart;
        return true;
    }
    BY_HANDLE_FILE_INFORMATION info;
    if (!GetFileInformationByHandle(file, &info))
        return false;
    identity.IndexHigh = info.nFileIndexHigh;
    identity.IndexLow = info.nFileIndexLow;
    return true;
}

static FILETIME AsFileTime(const LARGE_INTEGER &time)
{
    FILETIME converted = {time.LowPart, static_cast<DWORD>(time.HighPart)};
    return converted;
}

// Through the native query where there is one: GetFileTime and
// GetFileAttributesA would cost a lookup of the name besides.
bool StampOf(HANDLE file, CFileStamp &stamp)
{
    CBasicInformation basic = {};
    if (QueryNative(file, &basic, sizeof basic, FileBasicInformationClass)) {
        stamp.Created = AsFileTime(basic.CreationTime);
        stamp.Accessed = AsFileTime(basic.LastAccessTime);
        stamp.Written = AsFileTime(basic.LastWriteTime);
        stamp.Attributes = basic.FileAttributes;
        return true;
    }
    BY_HANDLE_FILE_INFORMATION info;
    if (!GetFileInformationByHandle(file, &info))
        return false;
    stamp.Created = info.ftCreationTime;
    stamp.Accessed = info.ftLastAccessTime;
    stamp.Written = info.ftLastWriteTime;
    stamp.Attributes = info.dwFileAttributes;
    return true;
}

bool SameIdentity(const CFileIdentity &a, const CFileIdentity &b)
{
    return a.IndexHigh == b.IndexHigh && a.IndexLow == b.IndexLow;
}

HANDLE OpenForDeletion(const char *path)
{
    return CreateFileA(path, DELETE | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, NULL, OPEN_EXISTING,
                       FILE_FLAG_OPEN_REPARSE_POINT, NULL);
}

bool DeleteThroughHandle(HANDLE file)
{
    if (!SetInformation() || !QueryInformation())
        return false;
    ClearReadOnly(file);
    BOOLEAN dispose = TRUE;
    CIoStatus io;
    return SetInformation()(file, &io, &dispose, sizeof dispose, FileDispositionInformationClass) == 0;
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
