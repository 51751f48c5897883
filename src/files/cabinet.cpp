#include "files/cabinet.h"

#include <fdi.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

#include "files/path_parts.h"

static_assert(sizeof(CCabinetErf) == sizeof(ERF), "ERF layout");
static_assert(offsetof(CCabinetErf, fError) == offsetof(ERF, fError), "ERF layout");
static_assert(sizeof(CCabinetInfo) == sizeof(FDICABINETINFO), "FDICABINETINFO layout");
static_assert(offsetof(CCabinetInfo, iCabinet) == offsetof(FDICABINETINFO, iCabinet), "FDICABINETINFO layout");
static_assert(offsetof(CCabinetInfo, hasnext) == offsetof(FDICABINETINFO, hasnext), "FDICABINETINFO layout");
static_assert(sizeof(FDINOTIFICATIONTYPE) == sizeof(int), "notification code passes as int");

namespace {

typedef HFDI(DIAMONDAPI *FdiCreateProc)(PFNALLOC, PFNFREE, PFNOPEN, PFNREAD, PFNWRITE, PFNCLOSE, PFNSEEK, int, PERF);
typedef BOOL(DIAMONDAPI *FdiCopyProc)(HFDI, char *, char *, int, PFNFDINOTIFY, PFNFDIDECRYPT, void *);
typedef BOOL(DIAMONDAPI *FdiIsCabinetProc)(HFDI, INT_PTR, PFDICABINETINFO);
typedef BOOL(DIAMONDAPI *FdiDestroyProc)(HFDI);

// Shared by all instances; a later instance overwrites them, so only one
// CCabinet may be alive at a time.
HMODULE CabinetLibrary;
FdiCreateProc FdiCreate;
FdiCopyProc FdiCopy;
FdiIsCabinetProc FdiIsCabinet;
FdiDestroyProc FdiDestroy;

// The target the decoder is writing, from its fdintCOPY_FILE to its
// fdintCLOSE_FILE_INFO. The decoder's write and close callbacks carry no
// object, so this too is shared. Handle is -1 once the file is closed, by
// whoever closed it: a decoder that fails part-way may close the target
// through CabClose itself (Wine's does) or leave it open.
struct COpenTarget {
    bool Unfinished;
    INT_PTR Handle;
    ULONG Expected;  // the size the cabinet gives the file
    ULONG Written;
};
COpenTarget OpenTarget = {false, -1, 0, 0};

bool IsSeparator(char c)
{
    return c == '\\' || c == '/';
}

int IsLeadByte(unsigned char c)
{
    return IsDBCSLeadByte(c) ? 1 : 0;
}

DWORD ShareFromMode(int pmode)
{
    DWORD share = 0;
    if (pmode & 0x100)
        share |= FILE_SHARE_READ;
    if (pmode & 0x80)
        share |= FILE_SHARE_WRITE;
    return share;
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

// The index of the member the decoder is in: until the last member is met,
// FollowingIndex already points one further.
int CurrentMemberIndex(const CCabinet &cabinet)
{
    return cabinet.LastCabinet ? cabinet.FollowingIndex : cabinet.FollowingIndex - 1;
}

// The member the walk works on next: its directory and its file name.
void StartAt(CCabinet &cabinet, const CPathString &member)
{
    cabinet.CurrentDirectory = member;
    cabinet.CurrentDirectory.GetFileName(cabinet.CabinetName);
    cabinet.CurrentDirectory.SetFileName("");
}

// The decoder has come to the member that was expected after the last one.
void ReachFollowingMember(CCabinet &cabinet)
{
    cabinet.ReachedCabinet = cabinet.FollowingCabinet;
    cabinet.ReachedDisk = cabinet.FollowingDisk;
    cabinet.ReachedIndex = cabinet.FollowingIndex;
}

// The directory part of Destination, with its separator: the text up to
// its last separator.
std::string DestinationDirectory(const CCabinet &cabinet)
{
    size_t separator = cabinet.Destination.Text.find_last_of("\\/");
    return separator == std::string::npos ? std::string() : cabinet.Destination.Text.substr(0, separator + 1);
}

// After a pass: a target the decoder opened and did not finish is closed,
// unless the decoder closed it already, and deleted, so that nothing half
// written is left for anyone to find.
void DiscardUnfinishedTarget(CCabinet &cabinet)
{
    if (!OpenTarget.Unfinished)
        return;
    if (OpenTarget.Handle != -1)
        CabClose(OpenTarget.Handle);
    DeleteFileA(cabinet.CurrentFile);
    OpenTarget = COpenTarget{false, -1, 0, 0};
}

INT_PTR NotifyResult(int given)
{
    return given ? 0 : -1;
}

INT_PTR OnCopyFileNotification(CCabinet &cabinet, FDINOTIFICATION *notification)
{
    cabinet.LastFileSkipped = 0;
    std::string path;
    int skip = 0;
    if (!cabinet.OnCopyFile(notification->psz1, notification->cb, path, skip))
        return -1;
    if (skip || path.empty()) {
        cabinet.LastFileSkipped = 1;
        return 0;
    }
    cabinet.OpenedIn = CurrentMemberIndex(cabinet);
    // Whatever the cabinet calls the file and whatever an override made of
    // it, the target lies inside the destination. A name that is absolute,
    // climbs out, names a device or does not fit is refused as a missing
    // directory would be, before anything touches a file.
    char target[MAX_PATH];
    if (!ResolveInside(target, sizeof target, DestinationDirectory(cabinet).c_str(), path.c_str())) {
        errno = ENOENT;
        return -1;
    }
    // Write-only, binary, sequential, created if missing, shared both ways.
    // No truncation: a longer existing file keeps its tail. An existing
    // target whose attributes refuse the write (read-only) has them cleared
    // and is opened again. Clearing them up front would cost a lookup of a
    // name that is almost never there, which in a full directory takes
    // longer than decoding the file.
    INT_PTR handle = CabOpen(target, 0x8121, 0x180);
    if (handle == -1 && errno == EACCES && SetFileAttributesA(target, FILE_ATTRIBUTE_NORMAL))
        handle = CabOpen(target, 0x8121, 0x180);
    cabinet.CurrentFile = target;
    if (handle != -1)
        OpenTarget = COpenTarget{true, handle, static_cast<ULONG>(notification->cb), 0};
    return handle;
}

INT_PTR OnCloseFileNotification(CCabinet &cabinet, FDINOTIFICATION *notification)
{
    USHORT date = notification->date;
    USHORT time = notification->time;
    USHORT attributes = notification->attribs;
    if (!cabinet.OnCloseFileInfo(notification->psz1, &date, &time, &attributes))
        return -1;
    // A decoder that gives up inside a file may still report it closed
    // (Wine's does when data runs short): short of its size it is no file
    // to install, and Extract deletes it.
    if (OpenTarget.Written < OpenTarget.Expected)
        return -1;
    // The cabinet's times, taken as local time, go on the handle that wrote
    // the file, before it is closed: nothing writes to it after that, so
    // they stay, and the file need not be opened again for them. A time
    // that cannot be set is let go.
    FILETIME local, universal;
    if (DosDateTimeToFileTime(date, time, &local) && LocalFileTimeToFileTime(&local, &universal))
        SetFileTime(reinterpret_cast<HANDLE>(notification->hf), &universal, NULL, &universal);
    CabClose(notification->hf);
    OpenTarget.Unfinished = false;
    // Read-only, hidden, system and archive, and nothing else. A file that
    // already shows exactly these (most do: a new file is archive) is not
    // set again.
    DWORD wanted =
        attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE);
    if (GetFileAttributesA(cabinet.CurrentFile) != (wanted ? wanted : FILE_ATTRIBUTE_NORMAL))
        SetFileAttributesA(cabinet.CurrentFile, wanted);
    cabinet.ClosedIn = CurrentMemberIndex(cabinet);
    return cabinet.OnFileExtracted(notification->psz1) ? 1 : -1;
}

INT_PTR OnNextCabinetNotification(CCabinet &cabinet, FDINOTIFICATION *notification)
{
    // The decoder asks again for as long as it is told to go on; past the
    // bound the walk gives up without asking.
    if (++cabinet.MemberPrompts > CCabinet::MaxMemberPrompts)
        return -1;
    std::string path = notification->psz3 ? notification->psz3 : "";
    int given = cabinet.OnNextCabinet(notification->psz1, notification->psz2, path, notification->fdie);
    if (notification->psz3)
        CopyBounded(notification->psz3, path.c_str(), CB_MAX_CAB_PATH);
    return NotifyResult(given);
}

}  // namespace

// ---------------------------------------------------------------- CPathString

void CPathString::Split(std::string *drive, std::string *directory, std::string *name,
                        std::string *extension) const
{
    char d[PathDriveSize], dir[PathPartSize], n[PathPartSize], e[PathPartSize];
    SplitPath(Text.c_str(), d, dir, n, e, IsLeadByte);
    if (drive) {
        size_t length = strlen(d);
        if (length && d[length - 1] == ':')
            d[length - 1] = 0;
        *drive = d;
    }
    if (directory) {
        size_t length = strlen(dir);
        if (length > 1 && IsSeparator(dir[length - 1]))
            dir[length - 1] = 0;
        *directory = dir;
    }
    if (name)
        *name = n;
    if (extension)
        *extension = e[0] == '.' ? e + 1 : e;
}

void CPathString::Compose(const char *drive, const char *directory, const char *name, const char *extension)
{
    char buffer[MAX_PATH];
    MakePath(buffer, sizeof buffer, drive, directory, name, extension);
    Text = buffer;
}

void CPathString::GetDirectory(std::string &out) const
{
    std::string drive, directory;
    Split(&drive, &directory, NULL, NULL);
    out.clear();
    if (!drive.empty())
        out = drive + ":";
    out += directory;
}

void CPathString::GetFileName(std::string &out) const
{
    std::string name, extension;
    Split(NULL, NULL, &name, &extension);
    out = name;
    if (!extension.empty())
        out += "." + extension;
}

void CPathString::SetDirectory(const char *path)
{
    std::string name, extension;
    Split(NULL, NULL, &name, &extension);
    Compose(NULL, path, name.c_str(), extension.c_str());
}

void CPathString::SetFileName(const char *file)
{
    std::string drive, directory;
    Split(&drive, &directory, NULL, NULL);
    Compose(drive.c_str(), directory.c_str(), file, NULL);
}

void CPathString::SetToTempDirectory()
{
    char buffer[MAX_PATH] = {0};
    GetTempPathA(MAX_PATH, buffer);
    Text = buffer;
    SetFileName("");
}

int CPathString::Exists() const
{
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA(Text.c_str(), &found);
    if (find == INVALID_HANDLE_VALUE)
        return 0;
    FindClose(find);
    return 1;
}

// ------------------------------------------------------------ decoder callbacks

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
    if (oflag & 0x4000) {
        errno = EINVAL;
        return -1;
    }
    DWORD access;
    if (oflag & 0x0001) {
        access = GENERIC_WRITE;
    } else if (oflag & 0x0002) {
        access = GENERIC_READ | GENERIC_WRITE;
    } else {
        access = GENERIC_READ;
        pmode += 0x100;
    }

    DWORD disposition;
    if (oflag & 0x0100) {
        if (oflag & 0x0400)
            disposition = CREATE_NEW;
        else if (oflag & 0x0200)
            disposition = CREATE_ALWAYS;
        else
            disposition = OPEN_ALWAYS;
    } else if (oflag & 0x0200) {
        disposition = TRUNCATE_EXISTING;
    } else {
        disposition = OPEN_EXISTING;
    }

    DWORD flags = FILE_ATTRIBUTE_NORMAL;
    if (oflag & 0x0010)
        flags |= FILE_FLAG_RANDOM_ACCESS;
    if (oflag & 0x0020)
        flags |= FILE_FLAG_SEQUENTIAL_SCAN;
    if ((oflag & 0x1000) && (oflag & 0x0100))
        flags |= FILE_ATTRIBUTE_TEMPORARY;
    if ((oflag & 0x0040) && (oflag & 0x0100))
        flags |= FILE_FLAG_DELETE_ON_CLOSE;

    HANDLE file = CreateFileA(path, access, ShareFromMode(pmode), NULL, disposition, flags, NULL);
    if (file == INVALID_HANDLE_VALUE) {
        errno = ErrnoFromOpenError(GetLastError());
        return -1;
    }
    if (oflag & 0x0008)
        SetFilePointer(file, 0, NULL, FILE_END);
    return reinterpret_cast<INT_PTR>(file);
}

UINT __cdecl CabRead(INT_PTR handle, void *buffer, UINT count)
{
    errno = 0;
    DWORD read = 0;
    if (!ReadFile(reinterpret_cast<HANDLE>(handle), buffer, count, &read, NULL)) {
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
    if (handle == OpenTarget.Handle)
        OpenTarget.Written += written;
    return written;
}

LONG __cdecl CabSeek(INT_PTR handle, LONG offset, int origin)
{
    errno = 0;
    DWORD method;
    switch (origin) {
    case 0:
        method = FILE_BEGIN;
        break;
    case 1:
        method = FILE_CURRENT;
        break;
    case 2:
        method = FILE_END;
        break;
    default:
        errno = EINVAL;
        return -1;
    }
    DWORD position = SetFilePointer(reinterpret_cast<HANDLE>(handle), offset, NULL, method);
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
    if (handle == OpenTarget.Handle)
        OpenTarget.Handle = -1;
    if (!CloseHandle(reinterpret_cast<HANDLE>(handle))) {
        errno = EBADF;
        return -1;
    }
    return 0;
}

INT_PTR __cdecl CabNotify(int code, void *pointer)
{
    FDINOTIFICATION *notification = static_cast<FDINOTIFICATION *>(pointer);
    CCabinet &cabinet = *static_cast<CCabinet *>(notification->pv);
    switch (code) {
    case fdintCABINET_INFO:
        cabinet.MemberPrompts = 0;
        return NotifyResult(cabinet.OnCabinetInfo(notification->setID, notification->psz3, notification->psz1,
                                                  notification->psz2, notification->iCabinet));
    case fdintPARTIAL_FILE:
        return NotifyResult(cabinet.OnPartialFile(notification->psz1, notification->psz2, notification->psz3));
    case fdintENUMERATE:
        return NotifyResult(cabinet.OnEnumerate(notification->setID, notification, &notification->iFolder));
    case fdintCOPY_FILE:
        return OnCopyFileNotification(cabinet, notification);
    case fdintCLOSE_FILE_INFO:
        return OnCloseFileNotification(cabinet, notification);
    case fdintNEXT_CABINET:
        return OnNextCabinetNotification(cabinet, notification);
    default:
        return 0;
    }
}

// -------------------------------------------------------------------- CCabinet

CCabinet::CCabinet()
    : FollowingIndex(0), ReachedIndex(-1), LastFileSkipped(0), CabinetFound(0), Context(NULL), OpenedIn(-1),
      ClosedIn(-1), LastCabinet(0), MemberPrompts(0)
{
    memset(&Erf, 0, sizeof Erf);
    Initialised = 0;

    CabinetLibrary = LoadLibraryA("CABINET");
    HFDI context = NULL;
    if (CabinetLibrary) {
        FdiCreate = reinterpret_cast<FdiCreateProc>(reinterpret_cast<void *>(GetProcAddress(CabinetLibrary, "FDICreate")));
        FdiCopy = reinterpret_cast<FdiCopyProc>(reinterpret_cast<void *>(GetProcAddress(CabinetLibrary, "FDICopy")));
        FdiIsCabinet = reinterpret_cast<FdiIsCabinetProc>(reinterpret_cast<void *>(GetProcAddress(CabinetLibrary, "FDIIsCabinet")));
        FdiDestroy = reinterpret_cast<FdiDestroyProc>(reinterpret_cast<void *>(GetProcAddress(CabinetLibrary, "FDIDestroy")));
        if (FdiCreate && FdiCopy && FdiIsCabinet && FdiDestroy)
            context = FdiCreate(CabAlloc, CabFree, CabOpen, CabRead, CabWrite, CabClose, CabSeek, cpu80386,
                                reinterpret_cast<PERF>(&Erf));
        if (!context) {
            FreeLibrary(CabinetLibrary);
            CabinetLibrary = NULL;
        }
    }
    Context = context;
    Initialised = Context != NULL;
    Destination.SetToTempDirectory();
}

CCabinet::~CCabinet()
{
    if (Initialised && Context && FdiDestroy(Context) == TRUE && CabinetLibrary) {
        FreeLibrary(CabinetLibrary);
        CabinetLibrary = NULL;
    }
}

int CCabinet::OnCabinetInfo(int setId, const char *cabinetPath, const char *nextCabinet, const char *nextDisk,
                            int index)
{
    // The next disk name, not the next cabinet name, tells whether the set
    // goes on.
    if (!nextDisk || !*nextDisk)
        LastCabinet = 1;
    ReachFollowingMember(*this);
    if (!LastCabinet) {
        ++FollowingIndex;
        FollowingCabinet.SetDirectory(cabinetPath);
        FollowingCabinet.SetFileName(nextCabinet);
        FollowingDisk = nextDisk;
    }
    return 1;
}

int CCabinet::OnCopyFile(const char *name, long size, std::string &path, int &skip)
{
    // Put together as text and never cut: a name too long for a path must
    // reach the open, which refuses it, rather than become a shorter name.
    path = DestinationDirectory(*this) + (name ? name : "");
    return 1;
}

int CCabinet::IsCabinet(const char *path, CCabinetInfo *info)
{
    if (!Initialised)
        return 0;
    char buffer[MAX_PATH];
    CopyBounded(buffer, path ? path : "", sizeof buffer);
    INT_PTR file = CabOpen(buffer, 0x20, 0);
    if (file == -1)
        return 0;
    FDICABINETINFO found;
    BOOL result = FdiIsCabinet(Context, file, &found);
    if (result && info)
        memcpy(info, &found, sizeof found);
    CabClose(file);
    return result;
}

void CCabinet::SetDestination(const char *path)
{
    if (!path)
        return;
    Destination = path;
    if (Destination.Text.empty() || !IsSeparator(Destination.Text[Destination.Text.size() - 1]))
        Destination.Text += '\\';
}

int CCabinet::Extract(const char *path, int followSet)
{
    CCabinetInfo info;
    if (!Initialised || !IsCabinet(path, &info))
        return 0;
    CabinetFound = 1;
    StartAt(*this, path);

    for (;;) {
        char directory[MAX_PATH];
        char name[MAX_PATH];
        CopyBounded(directory, CurrentDirectory, sizeof directory);
        CopyBounded(name, CabinetName.c_str(), sizeof name);
        std::string searchDirectory = directory;
        Erf.erfOper = FDIERROR_NONE;

        // From the second pass on: look for the member the decoder reached.
        // The prompt may point elsewhere; past the bound the walk gives up.
        MemberPrompts = 0;
        while (!CabinetFound) {
            CPathString candidate;
            candidate.Compose(NULL, searchDirectory.c_str(), CabinetName.c_str(), NULL);
            if (!candidate.Exists())
                Erf.erfOper = FDIERROR_CABINET_NOT_FOUND;
            else if (!IsCabinet(candidate, &info))
                Erf.erfOper = FDIERROR_NOT_A_CABINET;
            else if (info.iCabinet == ReachedIndex)
                CabinetFound = 1;
            else
                Erf.erfOper = FDIERROR_WRONG_CABINET;

            if (CabinetFound) {
                Erf.erfOper = FDIERROR_NONE;
                CurrentDirectory.SetDirectory(searchDirectory.c_str());
                CopyBounded(directory, CurrentDirectory, sizeof directory);
            } else if (++MemberPrompts > MaxMemberPrompts ||
                       !OnNextCabinet(CabinetName.c_str(), ReachedDisk.c_str(), searchDirectory, Erf.erfOper)) {
                Erf.erfOper = FDIERROR_USER_ABORT;
                Erf.fError = TRUE;
                return 0;
            }
        }

        FollowingDisk.clear();
        FollowingCabinet = CurrentDirectory;
        FollowingCabinet.SetFileName(CabinetName.c_str());
        ReachedIndex = OpenedIn = ClosedIn = -1;
        FollowingIndex = info.iCabinet;
        LastFileSkipped = LastCabinet = CabinetFound = 0;
        MemberPrompts = 0;

        BOOL result = FdiCopy(Context, name, directory, 0, reinterpret_cast<PFNFDINOTIFY>(GetNotifyFunction()),
                              NULL, this);
        DiscardUnfinishedTarget(*this);
        if (!followSet || !result)
            return result;
        if (LastCabinet && OpenedIn == ClosedIn)
            return result;
        if (LastFileSkipped || OpenedIn == ClosedIn) {
            // No file was left open across the end of this member: move on
            // to the member after it.
            ReachFollowingMember(*this);
        }
        StartAt(*this, ReachedCabinet);
    }
}

// ----------------------------------------------------------- CCabinetExtractor

CCabinetExtractor::~CCabinetExtractor()
{
    ExtractedNames.clear();
}

int CCabinetExtractor::OnFileExtracted(const char *name)
{
    if (name && *name)
        ExtractedNames.push_back(CBoundedString(name));
    return 1;
}

int CCabinetExtractor::PopExtractedName(char *out)
{
    if (ExtractedNames.empty())
        return 0;
    memset(out, 0, CBoundedString::Capacity);
    CopyBounded(out, ExtractedNames.back().Text, CBoundedString::Capacity);
    ExtractedNames.pop_back();
    return 1;
}
