#include "files/cabinet.h"

#include <fcntl.h>
#include <fdi.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

#include "files/file_spec.h"
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

template <typename Proc>
Proc Entry(FARPROC entry)
{
    return reinterpret_cast<Proc>(reinterpret_cast<void *>(entry));
}

// Write-only, binary, sequential, always a new file: nothing that stands at
// the name already is ever written through. Shared both ways.
const int TargetOpenFlags = _O_WRONLY | _O_BINARY | _O_SEQUENTIAL | _O_CREAT | _O_EXCL;
const int TargetShareMode = _S_IREAD | _S_IWRITE;
// What a cabinet may set of a file's attributes.
const DWORD KeptAttributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
const CCabinetTarget NoTarget = {false, -1, 0, 0, std::string()};

// The directory of a path, with its trailing separator.
std::string DirectoryOf(const std::string &path)
{
    return path.substr(0, FileNameOffset(path.c_str(), IsLeadByte));
}

std::string FileNameOf(const std::string &path)
{
    return path.substr(FileNameOffset(path.c_str(), IsLeadByte));
}

// The directory with one trailing separator.
std::string WithSeparator(const std::string &directory)
{
    char last = directory.empty() ? 0 : directory[directory.size() - 1];
    return (last == '\\' || last == '/') ? directory : directory + '\\';
}

// Whole into a MAX_PATH buffer, or not at all: a cut path names another file.
bool CopyWhole(char (&out)[MAX_PATH], const std::string &text)
{
    if (text.size() >= MAX_PATH)
        return false;
    std::memcpy(out, text.c_str(), text.size() + 1);
    return true;
}

// A file or a match of a pattern.
bool PathExists(const std::string &path)
{
    WIN32_FIND_DATAA found;
    CFindHandle find(FindFirstFileA(path.c_str(), &found));
    return find.IsValid();
}

// The index of the member the decoder is in: until the last member is met,
// FollowingIndex already points one further.
int CurrentMemberIndex(const CCabinet &cabinet)
{
    return cabinet.LastCabinet ? cabinet.FollowingIndex : cabinet.FollowingIndex - 1;
}

// The decoder has come to the member that was expected after the last one.
void ReachFollowingMember(CCabinet &cabinet)
{
    cabinet.ReachedCabinet = cabinet.FollowingCabinet;
    cabinet.ReachedDisk = cabinet.FollowingDisk;
    cabinet.ReachedIndex = cabinet.FollowingIndex;
}

INT_PTR NotifyResult(int given)
{
    return given ? 0 : -1;
}

// Whatever the cabinet calls the file and whatever an override made of it,
// the target lies inside the destination. A name that is absolute, climbs
// out, names a device or does not fit is refused as a missing directory
// would be, before anything touches a file. A name that this extraction
// made already (the same file twice) is made anew; anything else standing
// at the name refuses the open.
INT_PTR OpenTarget(CCabinet &cabinet, const std::string &path)
{
    char target[MAX_PATH];
    if (!ResolveInside(target, sizeof target, DirectoryOf(cabinet.Destination).c_str(), path.c_str())) {
        errno = ENOENT;
        return -1;
    }
    cabinet.CurrentFile = target;
    INT_PTR handle = CabOpen(target, TargetOpenFlags, TargetShareMode);
    if (handle == -1 && errno == EEXIST && cabinet.ForgetMadeFile(target))
        handle = CabOpen(target, TargetOpenFlags, TargetShareMode);
    CFileIdentity identity;
    if (handle == -1 || IdentityOf(reinterpret_cast<HANDLE>(handle), identity)) {
        if (handle != -1)
            cabinet.MadeFiles[target] = identity;
        return handle;
    }
    CabClose(handle);
    errno = EBADF;
    return -1;
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
    INT_PTR handle = OpenTarget(cabinet, path);
    if (handle != -1)
        cabinet.Target = CCabinetTarget{true, handle, static_cast<ULONG>(notification->cb), 0, cabinet.CurrentFile};
    return handle;
}

// The cabinet's times, taken as local time, go on the handle that wrote the
// file, before it is closed: nothing writes to it after that, so they stay,
// and the file need not be opened again for them. A time that cannot be set
// is let go.
void StampTimes(INT_PTR handle, USHORT date, USHORT time)
{
    FILETIME local, universal;
    if (DosDateTimeToFileTime(date, time, &local) && LocalFileTimeToFileTime(&local, &universal))
        SetFileTime(reinterpret_cast<HANDLE>(handle), &universal, NULL, &universal);
}

// A file that already shows exactly the wanted attributes (most do: a new
// file is archive) is not set again.
void SetKeptAttributes(const std::string &file, USHORT attributes)
{
    DWORD wanted = attributes & KeptAttributes;
    if (GetFileAttributesA(file.c_str()) != (wanted ? wanted : FILE_ATTRIBUTE_NORMAL))
        SetFileAttributesA(file.c_str(), wanted);
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
    if (cabinet.Target.Written < cabinet.Target.Expected)
        return -1;
    StampTimes(notification->hf, date, time);
    CabClose(notification->hf);
    cabinet.Target.Unfinished = false;
    SetKeptAttributes(cabinet.CurrentFile, attributes);
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
    if (!notification->psz3)
        return NotifyResult(given);
    // A directory that does not fit the decoder's buffer is not cut into
    // another one: the walk gives up instead.
    if (path.size() >= CB_MAX_CAB_PATH)
        return -1;
    std::memcpy(notification->psz3, path.c_str(), path.size() + 1);
    return NotifyResult(given);
}

// While the decoder runs a pass, its write and close callbacks find the
// target of this cabinet.
class CDecodingScope {
public:
    explicit CDecodingScope(CCabinetTarget &target) : Previous(DecodingTarget) { DecodingTarget = &target; }
    ~CDecodingScope() { DecodingTarget = Previous; }

private:
    CCabinetTarget *Previous;
};

}  // namespace

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
      ClosedIn(-1), LastCabinet(0), MemberPrompts(0), Target(NoTarget), Decoder()
{
    std::memset(&Erf, 0, sizeof Erf);
    Bind();
    Initialised = Context != NULL;
    char temp[MAX_PATH + 1] = "";
    GetTempPathA(MAX_PATH, temp);
    Destination = DirectoryOf(temp);
}

CCabinet::~CCabinet()
{
    if (Context)
        Entry<FdiDestroyProc>(Decoder.Destroy)(Context);
}

void CCabinet::Bind()
{
    Library.Reset(LoadLibraryA("CABINET"));
    if (!Library.IsValid())
        return;
    Decoder.Create = GetProcAddress(Library.Get(), "FDICreate");
    Decoder.Copy = GetProcAddress(Library.Get(), "FDICopy");
    Decoder.IsCabinet = GetProcAddress(Library.Get(), "FDIIsCabinet");
    Decoder.Destroy = GetProcAddress(Library.Get(), "FDIDestroy");
    if (Decoder.Create && Decoder.Copy && Decoder.IsCabinet && Decoder.Destroy)
        Context = Entry<FdiCreateProc>(Decoder.Create)(CabAlloc, CabFree, CabOpen, CabRead, CabWrite, CabClose,
                                                       CabSeek, cpu80386, reinterpret_cast<PERF>(&Erf));
    if (!Context)
        Library.Reset();
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
        FollowingCabinet = JoinPath(cabinetPath ? cabinetPath : "", nextCabinet ? nextCabinet : "");
        FollowingDisk = nextDisk;
    }
    return 1;
}

int CCabinet::OnCopyFile(const char *name, long size, std::string &path, int &skip)
{
    // Put together as text and never cut: a name too long for a path must
    // reach the open, which refuses it, rather than become a shorter name.
    path = DirectoryOf(Destination) + (name ? name : "");
    return 1;
}

int CCabinet::IsCabinet(const char *path, CCabinetInfo *info)
{
    char buffer[MAX_PATH];
    if (!Initialised || !CopyWhole(buffer, path ? path : ""))
        return 0;
    CGuardedReadsScope guarded(Reads);
    INT_PTR file = CabOpen(buffer, _O_SEQUENTIAL, 0);
    if (file == -1)
        return 0;
    FDICABINETINFO found;
    BOOL result = Entry<FdiIsCabinetProc>(Decoder.IsCabinet)(Context, file, &found);
    if (result && info)
        std::memcpy(info, &found, sizeof found);
    CabClose(file);
    return result;
}

void CCabinet::SetDestination(const char *path)
{
    if (!path)
        return;
    Destination = WithSeparator(path);
}

// The member the walk works on next: its directory and its file name.
void CCabinet::StartAt(const std::string &member)
{
    CurrentDirectory = DirectoryOf(member);
    CabinetName = FileNameOf(member);
}

int CCabinet::Extract(const char *path, int followSet)
{
    CCabinetInfo info;
    if (!Initialised || !IsCabinet(path, &info))
        return 0;
    CabinetFound = 1;
    StartAt(path);
    for (;;) {
        std::string searchDirectory = CurrentDirectory;
        Erf.erfOper = FDIERROR_NONE;
        if (!FindReachedMember(searchDirectory, info))
            return 0;
        BOOL result = RunPass(info);
        if (!followSet || !result)
            return result;
        if (LastCabinet && OpenedIn == ClosedIn)
            return result;
        // No file was left open across the end of this member: move on to
        // the member after it.
        if (LastFileSkipped || OpenedIn == ClosedIn)
            ReachFollowingMember(*this);
        StartAt(ReachedCabinet);
    }
}

// From the second pass on: looks for the member the decoder reached. The
// prompt may point elsewhere; past the bound the walk gives up.
bool CCabinet::FindReachedMember(std::string &searchDirectory, CCabinetInfo &info)
{
    MemberPrompts = 0;
    while (!CabinetFound) {
        Erf.erfOper = CheckMember(JoinPath(searchDirectory, CabinetName), info);
        if (Erf.erfOper == FDIERROR_NONE) {
            CabinetFound = 1;
            CurrentDirectory = searchDirectory.empty() ? searchDirectory : WithSeparator(searchDirectory);
        } else if (++MemberPrompts > MaxMemberPrompts ||
                   !OnNextCabinet(CabinetName.c_str(), ReachedDisk.c_str(), searchDirectory, Erf.erfOper)) {
            Erf.erfOper = FDIERROR_USER_ABORT;
            Erf.fError = TRUE;
            return false;
        }
    }
    return true;
}

int CCabinet::CheckMember(const std::string &candidate, CCabinetInfo &info)
{
    if (!PathExists(candidate))
        return FDIERROR_CABINET_NOT_FOUND;
    if (!IsCabinet(candidate.c_str(), &info))
        return FDIERROR_NOT_A_CABINET;
    if (info.iCabinet != ReachedIndex)
        return FDIERROR_WRONG_CABINET;
    return FDIERROR_NONE;
}

BOOL CCabinet::RunPass(const CCabinetInfo &info)
{
    FollowingDisk.clear();
    FollowingCabinet = JoinPath(CurrentDirectory, CabinetName);
    ReachedIndex = OpenedIn = ClosedIn = -1;
    FollowingIndex = info.iCabinet;
    LastFileSkipped = LastCabinet = CabinetFound = 0;
    MemberPrompts = 0;
    char directory[MAX_PATH], name[MAX_PATH];
    if (!CopyWhole(directory, CurrentDirectory) || !CopyWhole(name, CabinetName))
        return FALSE;
    BOOL result;
    {
        CDecodingScope decoding(Target);
        CGuardedReadsScope guarded(Reads);
        result = Entry<FdiCopyProc>(Decoder.Copy)(Context, name, directory, 0,
                                                  reinterpret_cast<PFNFDINOTIFY>(GetNotifyFunction()), NULL, this);
    }
    DiscardUnfinishedTarget();
    return result;
}

// After a pass: a target the decoder opened and did not finish is closed,
// unless the decoder closed it already, and deleted, so that nothing half
// written is left for anyone to find.
void CCabinet::DiscardUnfinishedTarget()
{
    if (Target.Unfinished) {
        if (Target.Handle != -1)
            CabClose(Target.Handle);
        ForgetMadeFile(CurrentFile);
    }
    Target = NoTarget;
}

void CCabinet::RemoveMadeFiles()
{
    for (const auto &made : MadeFiles)
        DeleteIfSame(made.first.c_str(), made.second);
    MadeFiles.clear();
}

bool CCabinet::ForgetMadeFile(const std::string &path)
{
    auto made = MadeFiles.find(path);
    if (made == MadeFiles.end())
        return false;
    bool deleted = DeleteIfSame(made->first.c_str(), made->second);
    MadeFiles.erase(made);
    return deleted;
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
    std::memset(out, 0, CBoundedString::Capacity);
    CopyBounded(out, ExtractedNames.back().Text, CBoundedString::Capacity);
    ExtractedNames.pop_back();
    return 1;
}
