#include "cabinet_maker.h"

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

void PutWord(std::string &out, unsigned value)
{
    out += static_cast<char>(value & 0xFF);
    out += static_cast<char>((value >> 8) & 0xFF);
}

void PutLong(std::string &out, unsigned long value)
{
    PutWord(out, value & 0xFFFF);
    PutWord(out, (value >> 16) & 0xFFFF);
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

std::string StoredCabinetBytes(const std::vector<CStoredFile> &files, const CStoredSetPlace &place)
{
    unsigned flags = 0;
    std::string links;
    if (!place.PreviousCabinet.empty()) {
        flags |= 1;
        links += place.PreviousCabinet + '\0' + place.PreviousDisk + '\0';
    }
    if (!place.NextCabinet.empty()) {
        flags |= 2;
        links += place.NextCabinet + '\0' + place.NextDisk + '\0';
    }

    std::string data;
    for (const CStoredFile &file : files)
        data += file.Content;
    if (data.size() > 0x8000)
        return std::string();

    const unsigned long headerSize = 36 + links.size();
    const unsigned long folderSize = files.empty() ? 0 : 8;
    unsigned long filesSize = 0;
    for (const CStoredFile &file : files)
        filesSize += 16 + file.Stored.size() + 1;
    const unsigned long dataStart = headerSize + folderSize + filesSize;
    const unsigned long total = dataStart + (files.empty() ? 0 : 8 + data.size());

    std::string out = "MSCF";
    PutLong(out, 0);
    PutLong(out, total);
    PutLong(out, 0);
    PutLong(out, headerSize + folderSize);
    PutLong(out, 0);
    out += '\3';
    out += '\1';
    PutWord(out, files.empty() ? 0 : 1);
    PutWord(out, static_cast<unsigned>(files.size()));
    PutWord(out, flags);
    PutWord(out, 4242);  // set id
    PutWord(out, place.Index);
    out += links;
    if (!files.empty()) {
        PutLong(out, dataStart);
        PutWord(out, 1);  // one data block
        PutWord(out, 0);  // stored
    }
    unsigned long offset = 0;
    for (const CStoredFile &file : files) {
        PutLong(out, file.Content.size());
        PutLong(out, offset);
        PutWord(out, 0);
        PutWord(out, file.Date);
        PutWord(out, file.Time);
        PutWord(out, file.Attributes);
        out += file.Stored;
        out += '\0';
        offset += file.Content.size();
    }
    if (!files.empty()) {
        PutLong(out, 0);  // no checksum
        PutWord(out, static_cast<unsigned>(data.size()));
        PutWord(out, static_cast<unsigned>(data.size()));
        out += data;
    }
    return out;
}

bool WriteStoredCabinet(const std::string &path, const std::vector<CStoredFile> &files, const CStoredSetPlace &place)
{
    std::string out = StoredCabinetBytes(files, place);
    if (out.empty())
        return false;
    HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    BOOL ok = WriteFile(file, out.data(), static_cast<DWORD>(out.size()), &written, NULL);
    CloseHandle(file);
    return ok && written == out.size();
}
