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
#include <map>
#include <string>

#include "files/cabinet_reads.h"
#include "files/file_identity.h"
#include "files/path_parts.h"
#include "inf/bounded_string.h"
#include "support/handles.h"

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
// errno on failure, errno cleared on entry. oflag and pmode are the C
// runtime's _O_ flags and _S_IREAD/_S_IWRITE; pmode gives the sharing.
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

typedef INT_PTR(__cdecl *CabNotifyFunction)(int, void *);

// A target from the decoder's fdintCOPY_FILE to its fdintCLOSE_FILE_INFO.
// Handle is -1 once the file is closed, by whoever closed it: a decoder that
// fails part-way may close the target through CabClose itself (Wine's does)
// or leave it open.
struct CCabinetTarget {
    bool Unfinished;
    INT_PTR Handle;
    ULONG Expected;  // the size the cabinet gives the file
    ULONG Written;
    std::string Path;
};

// The target the decoder is writing on this thread, while a pass runs: the
// write and close callbacks carry no object, so they find it here.
extern thread_local CCabinetTarget *DecodingTarget;

// The decoder's four entry points, as bound from the library.
struct CCabinetDecoder {
    FARPROC Create;
    FARPROC Copy;
    FARPROC IsCabinet;
    FARPROC Destroy;
};

class CCabinetContext {
public:
    CCabinetErf Erf;
    int Initialised;
    // The member being worked on: its directory, with its trailing
    // separator, and its file name.
    std::string CurrentDirectory;
    std::string CabinetName;
};

class CCabinet : public CCabinetContext {
public:
    CCabinet();
    virtual ~CCabinet();

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
    // Deletes every file the extraction made, by the identity it had when it
    // was made: a name that leads elsewhere now is left alone.
    void RemoveMadeFiles();
    // Forgets one such file and deletes it; false if path is none of them.
    bool ForgetMadeFile(const std::string &path);

    // How often a missing or wrong member is looked for before the walk gives
    // up on its own, whatever OnNextCabinet says.
    enum { MaxMemberPrompts = 3 };

    std::string FollowingCabinet;
    std::string FollowingDisk;
    int FollowingIndex;
    std::string ReachedCabinet;
    std::string ReachedDisk;
    int ReachedIndex;
    int LastFileSkipped;
    int CabinetFound;
    void *Context;
    int OpenedIn;
    int ClosedIn;
    int LastCabinet;
    // The directory to extract into, with its trailing separator.
    std::string Destination;
    std::string CurrentFile;
    // Prompts for the member the decoder is waiting for, since it last
    // reached one.
    int MemberPrompts;
    CCabinetTarget Target;
    // Every file the decoder's opens created, by path, with its identity.
    std::map<std::string, CFileIdentity, CPathLess> MadeFiles;

private:
    CCabinet(const CCabinet &);
    CCabinet &operator=(const CCabinet &);

    void Bind();
    void StartAt(const std::string &member);
    bool FindReachedMember(std::string &searchDirectory, CCabinetInfo &info);
    int CheckMember(const std::string &candidate, CCabinetInfo &info);
    BOOL RunPass(const CCabinetInfo &info);
    void DiscardUnfinishedTarget();

    CLibrary Library;
    CCabinetDecoder Decoder;
    // The cabinets the decoder reads while this object runs it.
    CGuardedReads Reads;
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
