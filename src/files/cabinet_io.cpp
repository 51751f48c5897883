// The file and memory layer under the cabinet decoder, in the manner of the
// C runtime: a failure gives -1 and sets errno, and every call clears errno
// first.
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

#include "files/cabinet.h"
#include "files/cabinet_reads.h"
#include "files/interruption_points.h"
#include "support/handles.h"

thread_local CCabinetTarget *DecodingTarget;

namespace {

DWORD ShareFromMode(int pmode)
{
    DWORD share = 0;
    if (pmode & _S_IREAD)
        share |= FILE_SHARE_READ;
    if (pmode & _S_IWRITE)
        share |= FILE_SHARE_WRITE;
    return share;
}

// A read-only open is of a cabinet: it shares reading only, so that nobody
// changes what its guard passed while the decoder reads it.
DWORD AccessFromFlags(int oflag, int &pmode)
{
    if (oflag & _O_WRONLY)
        return GENERIC_WRITE;
    if (oflag & _O_RDWR)
        return GENERIC_READ | GENERIC_WRITE;
    pmode = _S_IREAD;
    return GENERIC_READ;
}

DWORD DispositionFromFlags(int oflag)
{
    if (oflag & _O_CREAT) {
        if (oflag & _O_EXCL)
            return CREATE_NEW;
        return (oflag & _O_TRUNC) ? CREATE_ALWAYS : OPEN_ALWAYS;
    }
    return (oflag & _O_TRUNC) ? TRUNCATE_EXISTING : OPEN_EXISTING;
}

DWORD AttributesFromFlags(int oflag)
{
    DWORD flags = FILE_ATTRIBUTE_NORMAL;
    if (oflag & _O_RANDOM)
        flags |= FILE_FLAG_RANDOM_ACCESS;
    if (oflag & _O_SEQUENTIAL)
        flags |= FILE_FLAG_SEQUENTIAL_SCAN;
    if ((oflag & _O_SHORT_LIVED) && (oflag & _O_CREAT))
        flags |= FILE_ATTRIBUTE_TEMPORARY;
    if ((oflag & _O_TEMPORARY) && (oflag & _O_CREAT))
        flags |= FILE_FLAG_DELETE_ON_CLOSE;
    return flags;
}

int ErrnoFromOpenError(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return ENOENT;
    case ERROR_TOO_MANY_OPEN_FILES:
        return EMFILE;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return EACCES;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return EEXIST;
    case ERROR_INVALID_PARAMETER:
        return EINVAL;
    default:
        return static_cast<int>(error);
    }
}

bool IsDecodingTarget(INT_PTR handle)
{
    return DecodingTarget && DecodingTarget->Handle == handle;
}

}  // namespace

void *__cdecl CabAlloc(ULONG size)
{
    errno = 0;
    void *block = HeapAlloc(GetProcessHeap(), 0, size);
    if (!block)
        errno = ENOMEM;
    return block;
}

void __cdecl CabFree(void *block)
{
    errno = 0;
    if (block)
        HeapFree(GetProcessHeap(), 0, block);
}

INT_PTR __cdecl CabOpen(char *path, int oflag, int pmode)
{
    errno = 0;
    if (oflag & _O_TEXT) {
        errno = EINVAL;
        return -1;
    }
    DWORD access = AccessFromFlags(oflag, pmode);
    CFileHandle file(CreateFileA(path, access, ShareFromMode(pmode), NULL, DispositionFromFlags(oflag),
                                 AttributesFromFlags(oflag), NULL));
    if (!file.IsValid()) {
        errno = ErrnoFromOpenError(GetLastError());
        return -1;
    }
    // Outside an extraction there is nobody to guard a cabinet.
    if (access == GENERIC_READ && (!GuardedReads || !GuardedReads->Add(file.Get()))) {
        errno = EACCES;
        return -1;
    }
    if (oflag & _O_APPEND)
        SetFilePointer(file.Get(), 0, NULL, FILE_END);
    return reinterpret_cast<INT_PTR>(file.Release());
}

UINT __cdecl CabRead(INT_PTR handle, void *buffer, UINT count)
{
    errno = 0;
    DWORD read = 0;
    HANDLE file = reinterpret_cast<HANDLE>(handle);
    DWORD allowed = GuardedReads ? GuardedReads->Allow(file, count) : count;
    if (!ReadFile(file, buffer, allowed, &read, NULL)) {
        errno = EBADF;
        return static_cast<UINT>(-1);
    }
    return read;
}

UINT __cdecl CabWrite(INT_PTR handle, void *buffer, UINT count)
{
    errno = 0;
    DWORD written = 0;
    if (!WriteFile(reinterpret_cast<HANDLE>(handle), buffer, count, &written, NULL)) {
        DWORD error = GetLastError();
        errno = (error == ERROR_HANDLE_DISK_FULL || error == ERROR_DISK_FULL) ? ENOSPC : EBADF;
        return static_cast<UINT>(-1);
    }
    if (IsDecodingTarget(handle)) {
        if (!DecodingTarget->Written && written)
            InterruptionPoint(InterruptExtracting, DecodingTarget->Path.c_str());
        DecodingTarget->Written += written;
    }
    return written;
}

LONG __cdecl CabSeek(INT_PTR handle, LONG offset, int origin)
{
    errno = 0;
    // Indexed by the C runtime's SEEK_SET, SEEK_CUR and SEEK_END.
    static const DWORD Methods[] = {FILE_BEGIN, FILE_CURRENT, FILE_END};
    if (origin < SEEK_SET || origin > SEEK_END) {
        errno = EINVAL;
        return -1;
    }
    DWORD position = SetFilePointer(reinterpret_cast<HANDLE>(handle), offset, NULL, Methods[origin]);
    if (position == INVALID_SET_FILE_POINTER) {
        DWORD error = GetLastError();
        if (error != NO_ERROR) {
            errno = error == ERROR_INVALID_PARAMETER ? EINVAL : EBADF;
            return -1;
        }
    }
    return static_cast<LONG>(position);
}

int __cdecl CabClose(INT_PTR handle)
{
    errno = 0;
    if (IsDecodingTarget(handle))
        DecodingTarget->Handle = -1;
    if (GuardedReads)
        GuardedReads->Remove(reinterpret_cast<HANDLE>(handle));
    // The one close of what CabOpen handed out: the decoder owns these
    // handles between the two calls.
    if (!CloseHandle(reinterpret_cast<HANDLE>(handle))) {
        errno = EBADF;
        return -1;
    }
    return 0;
}
