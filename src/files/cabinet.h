// Cabinet extraction through the system's decoder (CABINET.DLL, bound at run
// time). CCabinet walks a cabinet set member by member and turns the
// decoder's notifications into virtual calls; CCabinetExtractor remembers
// what came out.
//
// The decoder's own header is kept out of here on purpose: the records this
// layer shares with it are declared below with the same layout, and the .cpp
// checks that layout against <fdi.h>.
#ifndef TOVREL_FILES_CABINET_H
#define TOVREL_FILES_CABINET_H

#include <windows.h>

#include <deque>
#include <string>

#include "inf/bounded_string.h"

// The decoder's error record (ERF): erfOper carries an FDIERROR code.
struct CCabinetErf {
    int erfOper;
    int erfType;
    BOOL fError;
};

// The decoder's FDICABINETINFO.
struct CCabinetInfo {
    LONG cbCabinet;
    USHORT cFolders;
    USHORT cFiles;
    USHORT setID;
    USHORT iCabinet;
    BOOL fReserve;
    BOOL hasprev;
    BOOL hasnext;
};

// The C-runtime-style layer the decoder reads and writes through: -1 and
// errno on failure, errno cleared on entry.
void *__cdecl CabAlloc(ULONG size);
void __cdecl CabFree(void *block);
INT_PTR __cdecl CabOpen(char *path, int oflag, int pmode);
UINT __cdecl CabRead(INT_PTR handle, void *buffer, UINT count);
UINT __cdecl CabWrite(INT_PTR handle, void *buffer, UINT count);
LONG __cdecl CabSeek(INT_PTR handle, LONG offset, int origin);
int __cdecl CabClose(INT_PTR handle);
// code is an FDINOTIFICATIONTYPE, notification an FDINOTIFICATION whose pv
// is the CCabinet.
INT_PTR __cdecl CabNotify(int code, void *notification);

typedef void *(__cdecl *CabAllocFunction)(ULONG);
typedef void(__cdecl *CabFreeFunction)(void *);
typedef INT_PTR(__cdecl *CabOpenFunction)(char *, int, int);
typedef UINT(__cdecl *CabReadFunction)(INT_PTR, void *, UINT);
typedef UINT(__cdecl *CabWriteFunction)(INT_PTR, void *, UINT);
typedef LONG(__cdecl *CabSeekFunction)(INT_PTR, LONG, int);
typedef int(__cdecl *CabCloseFunction)(INT_PTR);
typedef INT_PTR(__cdecl *CabNotifyFunction)(int, void *);

// One path kept in a string, taken apart and put together by the rules of
// _splitpath and _makepath.
class CPathString {
public:
    CPathString() {}
    CPathString(const char *text) : Text(text ? text : "") {}
    CPathString(const CPathString &other) : Text(other.Text) {}
    virtual ~CPathString() {}

    CPathString &operator=(const CPathString &other)
    {
        Text = other.Text;
        return *this;
    }
    CPathString &operator=(const char *text)
    {
        Text = text ? text : "";
        return *this;
    }
    operator const char *() const { return Text.c_str(); }

    // Any argument may be null. The drive comes without its colon, the
    // directory without its trailing backslash (unless it is the root alone),
    // the extension without its dot.
    void Split(std::string *drive, std::string *directory, std::string *name, std::string *extension) const;
    void Compose(const char *drive, const char *directory, const char *name, const char *extension);
    void GetDirectory(std::string &out) const;
    void GetFileName(std::string &out) const;
    void SetDirectory(const char *path);
    void SetFileName(const char *file);
    void SetToTempDirectory();
    int Exists() const;

    std::string Text;
};

class CCabinetContext {
public:
    CCabinetErf Erf;
    int Initialised;
    CPathString CurrentDirectory;
    std::string CabinetName;
};

class CCabinet : public CCabinetContext {
public:
    CCabinet();
    virtual ~CCabinet();

    virtual CabAllocFunction GetAllocFunction() { return CabAlloc; }
    virtual CabFreeFunction GetFreeFunction() { return CabFree; }
    virtual CabOpenFunction GetOpenFunction() { return CabOpen; }
    virtual CabReadFunction GetReadFunction() { return CabRead; }
    virtual CabWriteFunction GetWriteFunction() { return CabWrite; }
    virtual CabSeekFunction GetSeekFunction() { return CabSeek; }
    virtual CabCloseFunction GetCloseFunction() { return CabClose; }
    virtual CabNotifyFunction GetNotifyFunction() { return CabNotify; }

    // Each gives 1 to go on, 0 to stop the decoder; the base class goes on.
    virtual int OnCabinetInfo(int setId, const char *cabinetPath, const char *nextCabinet, const char *nextDisk,
                              int index);
    virtual int OnPartialFile(const char *name, const char *firstCabinet, const char *firstDisk) { return 1; }
    virtual int OnCopyFile(const char *name, long size, std::string &path, int &skip);
    virtual int OnCloseFileInfo(const char *name, USHORT *date, USHORT *time, USHORT *attributes) { return 1; }
    virtual int OnFileExtracted(const char *name) { return 1; }
    // notification is the decoder's FDINOTIFICATION.
    virtual int OnEnumerate(int setId, void *notification, USHORT *folder) { return 1; }
    // path is the directory the member is expected in; error an FDIERROR code.
    // 1 goes on, 0 abandons the extraction.
    virtual int OnNextCabinet(const char *cabinet, const char *disk, std::string &path, int error) { return 1; }

    int IsCabinet(const char *path, CCabinetInfo *info);
    void SetDestination(const char *path);
    int Extract(const char *path, int followSet);

    // How often a missing or wrong member is looked for before the walk gives
    // up on its own, whatever OnNextCabinet says.
    enum { MaxMemberPrompts = 3 };

    CPathString FollowingCabinet;
    std::string FollowingDisk;
    int FollowingIndex;
    CPathString ReachedCabinet;
    std::string ReachedDisk;
    int ReachedIndex;
    int LastFileSkipped;
    int CabinetFound;
    void *Context;
    int OpenedIn;
    int ClosedIn;
    int LastCabinet;
    CPathString Destination;
    CPathString CurrentFile;
    // Prompts for the member the decoder is waiting for, since it last
    // reached one.
    int MemberPrompts;

private:
    CCabinet(const CCabinet &);
    CCabinet &operator=(const CCabinet &);
};

class CCabinetExtractor : public CCabinet {
public:
    ~CCabinetExtractor() override;
    int OnFileExtracted(const char *name) override;
    // The most recent name first; 0 once none is left.
    int PopExtractedName(char *out);

    std::deque<CBoundedString> ExtractedNames;
};

#endif
