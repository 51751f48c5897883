#include "cabinet_set.h"

#include <fci.h>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <type_traits>

namespace {

typedef HFCI(DIAMONDAPI *FciCreateProc)(PERF, PFNFCIFILEPLACED, PFNFCIALLOC, PFNFCIFREE, PFNFCIOPEN, PFNFCIREAD,
                                        PFNFCIWRITE, PFNFCICLOSE, PFNFCISEEK, PFNFCIDELETE, PFNFCIGETTEMPFILE, PCCAB,
                                        void *);
typedef BOOL(DIAMONDAPI *FciAddFileProc)(HFCI, char *, char *, BOOL, PFNFCIGETNEXTCABINET, PFNFCISTATUS,
                                         PFNFCIGETOPENINFO, TCOMP);
typedef BOOL(DIAMONDAPI *FciFlushCabinetProc)(HFCI, BOOL, PFNFCIGETNEXTCABINET, PFNFCISTATUS);
typedef BOOL(DIAMONDAPI *FciFlushFolderProc)(HFCI, PFNFCIGETNEXTCABINET, PFNFCISTATUS);
typedef BOOL(DIAMONDAPI *FciDestroyProc)(HFCI);

struct CMakerState {
    const CCabinetSetPlan *Plan;
    const CCabinetEntry *Current;
    int Members;
};

void NameMember(const CCabinetSetPlan &plan, int index, CCAB *ccab)
{
    snprintf(ccab->szCab, sizeof ccab->szCab, "%s%d.cab", plan.Prefix.c_str(), index);
    if (plan.DiskNames)
        snprintf(ccab->szDisk, sizeof ccab->szDisk, "disk%d", index);
    else
        ccab->szDisk[0] = 0;
}

// The runtime's file calls, each noting errno for FCI.
FNFCIALLOC(MakerAlloc) { return HeapAlloc(GetProcessHeap(), 0, cb); }
FNFCIFREE(MakerFree) { HeapFree(GetProcessHeap(), 0, memory); }
template <typename T> T Noted(T result, int *err) { if (result == static_cast<T>(-1)) *err = errno; return result; }
FNFCIOPEN(MakerOpen) { return Noted(_open(pszFile, oflag, pmode), err); }
FNFCIREAD(MakerRead) { return static_cast<UINT>(Noted(_read(static_cast<int>(hf), memory, cb), err)); }
FNFCIWRITE(MakerWrite) { return static_cast<UINT>(Noted(_write(static_cast<int>(hf), memory, cb), err)); }
FNFCICLOSE(MakerClose) { return Noted(_close(static_cast<int>(hf)), err); }
FNFCISEEK(MakerSeek) { return Noted(_lseek(static_cast<int>(hf), dist, seektype), err); }
FNFCIDELETE(MakerDelete) { return DeleteFileA(pszFile) ? 0 : (*err = EACCES, -1); }
FNFCIFILEPLACED(MakerFilePlaced) { return 0; }
FNFCISTATUS(MakerStatus) { return 0; }

FNFCIGETTEMPFILE(MakerTempFile)
{
    char directory[MAX_PATH], name[MAX_PATH];
    GetTempPathA(MAX_PATH, directory);
    if (!GetTempFileNameA(directory, "fci", 0, name) || static_cast<int>(strlen(name)) >= cbTempName)
        return FALSE;
    DeleteFileA(name);
    strcpy(pszTempName, name);
    return TRUE;
}

FNFCIGETNEXTCABINET(MakerNextCabinet)
{
    CMakerState *state = static_cast<CMakerState *>(pv);
    NameMember(*state->Plan, state->Members++, pccab);
    return TRUE;
}

FNFCIGETOPENINFO(MakerOpenInfo)
{
    CMakerState *state = static_cast<CMakerState *>(pv);
    int handle = _open(pszName, _O_RDONLY | _O_BINARY);
    if (handle == -1) {
        *err = errno;
        return -1;
    }
    const CCabinetEntry *entry = state->Current;
    if (entry && entry->Date) {
        *pdate = entry->Date;
        *ptime = entry->Time;
        *pattribs = entry->Attributes;
        return handle;
    }
    BY_HANDLE_FILE_INFORMATION information;
    FILETIME local;
    GetFileInformationByHandle(reinterpret_cast<HANDLE>(_get_osfhandle(handle)), &information);
    FileTimeToLocalFileTime(&information.ftLastWriteTime, &local);
    FileTimeToDosDateTime(&local, pdate, ptime);
    *pattribs = static_cast<USHORT>(information.dwFileAttributes &
                                    (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                     FILE_ATTRIBUTE_ARCHIVE));
    return handle;
}

}  // namespace

std::vector<std::string> MakeCabinetSet(const CCabinetSetPlan &plan, const std::vector<CCabinetEntry> &entries)
{
    std::vector<std::string> members;
    HMODULE library = LoadLibraryA("cabinet.dll");
    auto bind = [library](auto &proc, const char *name) {
        proc = reinterpret_cast<std::remove_reference_t<decltype(proc)>>(
            reinterpret_cast<void *>(GetProcAddress(library, name)));
        return proc != nullptr;
    };
    FciCreateProc create;
    FciAddFileProc addFile;
    FciFlushCabinetProc flushCabinet;
    FciFlushFolderProc flushFolder;
    FciDestroyProc destroy;
    if (!library || !bind(create, "FCICreate") || !bind(addFile, "FCIAddFile") ||
        !bind(flushCabinet, "FCIFlushCabinet") || !bind(flushFolder, "FCIFlushFolder") || !bind(destroy, "FCIDestroy")) {
        if (library)
            FreeLibrary(library);
        return members;
    }

    CMakerState state = {&plan, NULL, 0};
    CCAB ccab;
    memset(&ccab, 0, sizeof ccab);
    ccab.cb = plan.MemberSize ? plan.MemberSize : 0x7FFFFFFF;
    ccab.cbFolderThresh = 0x7FFFFFFF;
    ccab.setID = 4242;
    strcpy(ccab.szCabPath, plan.Directory.c_str());
    NameMember(plan, state.Members++, &ccab);

    ERF erf;
    memset(&erf, 0, sizeof erf);
    HFCI fci = create(&erf, MakerFilePlaced, MakerAlloc, MakerFree, MakerOpen, MakerRead, MakerWrite, MakerClose,
                      MakerSeek, MakerDelete, MakerTempFile, &ccab, &state);
    bool ok = fci != NULL;
    for (size_t i = 0; ok && i < entries.size(); ++i) {
        state.Current = &entries[i];
        std::string source = entries[i].Source;
        std::string stored = entries[i].Stored;
        ok = addFile(fci, &source[0], &stored[0], FALSE, MakerNextCabinet, MakerStatus, MakerOpenInfo,
                     plan.Compression) &&
             flushFolder(fci, MakerNextCabinet, MakerStatus);
    }
    if (ok)
        ok = flushCabinet(fci, FALSE, MakerNextCabinet, MakerStatus);
    if (fci)
        destroy(fci);
    FreeLibrary(library);
    if (!ok)
        return members;

    for (int i = 0; i < state.Members; ++i) {
        CCAB name;
        NameMember(plan, i, &name);
        std::string path = plan.Directory + name.szCab;
        if (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES)
            members.push_back(path);
    }
    return members;
}
