// Extraction speed of a cabinet set, and what placing each of its files
// whole costs against writing it in place.
//   cabinet_bench make DIR      writes DIR/source and the set DIR/set*.cab
//   cabinet_bench run DIR [N]   copies the set into the printer driver
//                               directory, where the install looks for it,
//                               and extracts it from there with each figure
//                               below, N rounds, into DIR/out
// Prints one line per figure:
//   "figure NAME seconds BEST bytes B files F median MEDIAN".
// Add a figure by adding a row to Figures.
#include <windows.h>

#include <fdi.h>
#include <fcntl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "cabinet_set.h"
#include "entry/printer_inf.h"
#include "files/cabinet.h"
#include "files/file_spec.h"
#include "files/staged_copy.h"

namespace {

const int FileCount = 260;
const size_t FileSize = 80 * 1024;

struct CRunResult {
    unsigned long long Bytes;
    int Files;
};

std::string Out(const std::string &directory)
{
    return directory + "out\\";
}

// Where every figure reads the set: the printer driver directory, the only
// place the install takes cabinets from.
std::string CabinetDirectory()
{
    CFileSpec spec;
    spec.Resolve(FileSpecPrinterDrivers);
    std::string path = spec.DirectoryPath();
    if (path.empty() || path.back() != '\\')
        path += '\\';
    return path;
}

void ClearDirectory(const std::string &directory)
{
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((directory + "*").c_str(), &found);
    if (find == INVALID_HANDLE_VALUE)
        return;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
            std::string path = directory + found.cFileName;
            SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            DeleteFileA(path.c_str());
        }
    } while (FindNextFileA(find, &found));
    FindClose(find);
}

CRunResult Measure(const std::string &directory)
{
    CRunResult result = {0, 0};
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((Out(directory) + "*").c_str(), &found);
    if (find == INVALID_HANDLE_VALUE)
        return result;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
            result.Bytes += found.nFileSizeLow;
            ++result.Files;
        }
    } while (FindNextFileA(find, &found));
    FindClose(find);
    return result;
}

// ---------------------------------------------------------------- figures

bool ExtractWithExtractor(const std::string &directory)
{
    CCabinetExtractor extractor;
    extractor.SetDestination(Out(directory).c_str());
    return extractor.Extract((CabinetDirectory() + "set0.cab").c_str(), 1) != 0;
}

// The whole copy stage of an install: the set unpacked into a temporary
// directory, each file copied to its destination and recorded for uninstall.
// Opened once; each round runs the stage alone.
CPrinterInf *Printer;

bool OpenPrinterInf(const std::string &directory)
{
    std::string inf = directory + "bench.inf";
    std::string text =
        "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
        "[Manufacturer]\r\nAcme=AcmeDevices\r\n"
        "[AcmeDevices]\r\nCabinetBench=Inst\r\n"
        "[Inst]\r\nDataSection=Data\r\nCopyCabs=set0.cab\r\n"
        "[Data]\r\nDriverFile=drv.dll\r\nDataFile=drv.dat\r\nConfigFile=cfg.dll\r\nHelpFile=drv.hlp\r\n"
        "[DestinationDirs]\r\nDefaultDestDir=11\r\n"
        "[DestinationDirs.CAB]\r\nset0=1\r\n";
    HANDLE file = CreateFileA(inf.c_str(), GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL);
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, NULL);
    CloseHandle(file);
    Printer = new CPrinterInf;
    if (!Printer->Open(inf.c_str())) {
        fprintf(stderr, "Open failed\n");
        return false;
    }
    if (!Printer->ReadDeviceSection("Acme", "CabinetBench", "CabinetBench")) {
        fprintf(stderr, "ReadDeviceSection failed\n");
        return false;
    }
    // INF id 1 is the directory of the running module; here it is the
    // bench's own output directory instead. The backslash at its end keeps
    // "out" a directory, not a file name.
    Printer->DirectoryIds[1] = CBoundedString(Out(directory).c_str());
    return true;
}

bool ExtractWithCopyFiles(const std::string &directory)
{
    return Printer->CopyFiles() == 1;
}

// The decoder with the least a caller can give it.
FNALLOC(BareAlloc)
{
    return malloc(cb);
}
FNFREE(BareFree)
{
    free(pv);
}
// Targets are opened the cheapest way Wine has: OPEN_ALWAYS, because
// CREATE_ALWAYS costs more even for a file that is not there yet.
FNOPEN(BareOpen)
{
    bool create = (oflag & _O_CREAT) != 0;
    HANDLE file = CreateFileA(pszFile, create ? GENERIC_WRITE : GENERIC_READ, FILE_SHARE_READ, NULL,
                              create ? OPEN_ALWAYS : OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL | (create ? FILE_FLAG_SEQUENTIAL_SCAN : 0), NULL);
    return file == INVALID_HANDLE_VALUE ? -1 : reinterpret_cast<INT_PTR>(file);
}
FNREAD(BareRead)
{
    DWORD done = 0;
    return ReadFile(reinterpret_cast<HANDLE>(hf), pv, cb, &done, NULL) ? done : static_cast<UINT>(-1);
}
FNWRITE(BareWrite)
{
    DWORD done = 0;
    return WriteFile(reinterpret_cast<HANDLE>(hf), pv, cb, &done, NULL) ? done : static_cast<UINT>(-1);
}
FNCLOSE(BareClose)
{
    return CloseHandle(reinterpret_cast<HANDLE>(hf)) ? 0 : -1;
}
FNSEEK(BareSeek)
{
    return SetFilePointer(reinterpret_cast<HANDLE>(hf), dist, NULL, seektype);
}

struct CBareState {
    std::string Out;
    std::string Next;
};

FNFDINOTIFY(BareNotify)
{
    CBareState *state = static_cast<CBareState *>(pfdin->pv);
    switch (fdint) {
    case fdintCABINET_INFO:
        state->Next = pfdin->psz1;
        return 0;
    case fdintCOPY_FILE:
        return BareOpen(const_cast<char *>((state->Out + pfdin->psz1).c_str()), _O_CREAT | _O_WRONLY, 0);
    case fdintCLOSE_FILE_INFO:
        BareClose(pfdin->hf);
        return 1;
    default:
        return 0;
    }
}

bool ExtractWithBareFdiCopy(const std::string &directory)
{
    HMODULE library = LoadLibraryA("cabinet.dll");
    typedef HFDI(DIAMONDAPI * CreateProc)(PFNALLOC, PFNFREE, PFNOPEN, PFNREAD, PFNWRITE, PFNCLOSE, PFNSEEK, int,
                                          PERF);
    typedef BOOL(DIAMONDAPI * CopyProc)(HFDI, char *, char *, int, PFNFDINOTIFY, PFNFDIDECRYPT, void *);
    typedef BOOL(DIAMONDAPI * DestroyProc)(HFDI);
    CreateProc create = reinterpret_cast<CreateProc>(reinterpret_cast<void *>(GetProcAddress(library, "FDICreate")));
    CopyProc copy = reinterpret_cast<CopyProc>(reinterpret_cast<void *>(GetProcAddress(library, "FDICopy")));
    DestroyProc destroy = reinterpret_cast<DestroyProc>(reinterpret_cast<void *>(GetProcAddress(library, "FDIDestroy")));
    ERF erf;
    HFDI fdi = create(BareAlloc, BareFree, BareOpen, BareRead, BareWrite, BareClose, BareSeek, cpu80386, &erf);
    CBareState state = {Out(directory), "set0.cab"};
    bool ok = true;
    // Member by member: a file running into the next member is finished by
    // the decoder and reported there as partial, which is skipped.
    while (ok && !state.Next.empty()) {
        std::string name = state.Next;
        state.Next.clear();
        std::string path = CabinetDirectory();
        ok = copy(fdi, &name[0], &path[0], 0, BareNotify, NULL, &state) != 0;
    }
    destroy(fdi);
    FreeLibrary(library);
    return ok;
}

// One file's way to its place, for every file of the set's source: the
// install's copy (whole under a temporary name beside the target, flushed,
// then renamed to it) and the copy it replaced, CopyFileA straight onto the
// target.
template <bool Staged>
bool PlaceSourceFiles(const std::string &directory)
{
    const std::string source = directory + "source\\";
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((source + "*.dat").c_str(), &found);
    bool ok = find != INVALID_HANDLE_VALUE;
    for (bool more = ok; more; more = FindNextFileA(find, &found) != 0) {
        std::string from = source + found.cFileName, to = Out(directory) + found.cFileName;
        CStagedFile staged;
        if (Staged)
            ok &= StageCopy(from.c_str(), to.c_str(), staged) && MoveStaged(staged, to.c_str(), false);
        else
            ok &= CopyFileA(from.c_str(), to.c_str(), TRUE) != 0;
    }
    if (find != INVALID_HANDLE_VALUE)
        FindClose(find);
    return ok;
}

struct CFigure {
    const char *Name;
    bool (*Run)(const std::string &directory);
};

const CFigure Figures[] = {
    {"extractor", ExtractWithExtractor},
    {"fdicopy", ExtractWithBareFdiCopy},
    {"copyfiles", ExtractWithCopyFiles},
    {"staged", PlaceSourceFiles<true>},
    {"inplace", PlaceSourceFiles<false>},
};

// ------------------------------------------------------------------ set up

std::string Words(size_t size, unsigned seed)
{
    // Words with noise between them: MSZIP has real work to do, and every
    // file stays over 32 KiB compressed, which Wine's FCI needs for the
    // files that run across members.
    static const char *words[] = {"printer", "driver", "install", "cabinet", "folder", "spooler", "monitor",
                                  "port", "queue", "page", "colour", "paper", "tray", "duplex", "resolution",
                                  "font", "form", "job", "status", "version"};
    std::string text;
    text.reserve(size + 16);
    unsigned value = seed * 2654435761u + 7;
    while (text.size() < size) {
        value = value * 1103515245u + 12345u;
        text += words[(value >> 16) % 20];
        for (int i = 0; i < 6; ++i) {
            value = value * 1103515245u + 12345u;
            text += static_cast<char>('A' + (value >> 16) % 58);
        }
        text += ((value >> 8) & 15) == 0 ? '\n' : ' ';
        if (((value >> 4) & 31) == 0)
            text += std::to_string(value % 100000);
    }
    text.resize(size);
    return text;
}

int Make(const std::string &directory)
{
    std::string source = directory + "source\\";
    CreateDirectoryA(directory.c_str(), NULL);
    CreateDirectoryA(source.c_str(), NULL);
    std::vector<CCabinetEntry> entries;
    for (int i = 0; i < FileCount; ++i) {
        char name[32];
        snprintf(name, sizeof name, "file%03d.dat", i);
        std::string text = Words(FileSize + (i % 7) * 1000, i);
        HANDLE file = CreateFileA((source + name).c_str(), GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL);
        DWORD written = 0;
        WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, NULL);
        CloseHandle(file);
        CCabinetEntry entry = {source + name, name, 0, 0, 0};
        entries.push_back(entry);
    }
    CCabinetSetPlan plan = {directory, "set", true, 0, 1};
    std::vector<std::string> members = MakeCabinetSet(plan, entries);
    printf("members %u\n", static_cast<unsigned>(members.size()));
    return members.empty() ? 1 : 0;
}

bool CopySetToDriverDirectory(const std::string &directory)
{
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((directory + "set*.cab").c_str(), &found);
    if (find == INVALID_HANDLE_VALUE)
        return false;
    bool ok = true;
    do
        ok &= CopyFileA((directory + found.cFileName).c_str(), (CabinetDirectory() + found.cFileName).c_str(),
                        FALSE) != 0;
    while (FindNextFileA(find, &found));
    FindClose(find);
    return ok;
}

double Median(std::vector<double> times)
{
    if (times.empty())
        return 0;
    std::sort(times.begin(), times.end());
    size_t middle = times.size() / 2;
    return times.size() % 2 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
}

int Run(const std::string &directory, int repeats)
{
    CreateDirectoryA(Out(directory).c_str(), NULL);
    if (!CopySetToDriverDirectory(directory)) {
        fprintf(stderr, "cannot copy the set to %s\n", CabinetDirectory().c_str());
        return 1;
    }
    if (!OpenPrinterInf(directory)) {
        fprintf(stderr, "cannot open the model in %sbench.inf\n", directory.c_str());
        return 1;
    }
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    const size_t count = sizeof Figures / sizeof Figures[0];
    std::vector<std::vector<double> > times(count);
    std::vector<CRunResult> results(count);
    std::vector<bool> failed(count, false);
    // Rounds of every figure in turn, so that a slow spell of the machine
    // falls on all of them alike; the best and the median of each are kept.
    for (int round = 0; round < repeats; ++round) {
        for (size_t f = 0; f < count; ++f) {
            if (failed[f])
                continue;
            ClearDirectory(Out(directory));
            LARGE_INTEGER start, end;
            QueryPerformanceCounter(&start);
            bool ok = Figures[f].Run(directory);
            QueryPerformanceCounter(&end);
            double seconds = double(end.QuadPart - start.QuadPart) / double(frequency.QuadPart);
            if (!ok) {
                fprintf(stderr, "%s failed\n", Figures[f].Name);
                failed[f] = true;
                continue;
            }
            times[f].push_back(seconds);
            results[f] = Measure(directory);
        }
    }
    int failures = 0;
    for (size_t f = 0; f < count; ++f) {
        if (failed[f]) {
            ++failures;
            continue;
        }
        printf("figure %s seconds %.4f bytes %llu files %d median %.4f\n", Figures[f].Name,
               *std::min_element(times[f].begin(), times[f].end()), results[f].Bytes, results[f].Files,
               Median(times[f]));
    }
    ClearDirectory(Out(directory));
    delete Printer;
    return failures;
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        fprintf(stderr, "usage: cabinet_bench make|run DIR [REPEATS]\n");
        return 2;
    }
    std::string directory = argv[2];
    if (directory.back() != '\\')
        directory += '\\';
    if (!strcmp(argv[1], "make"))
        return Make(directory);
    if (!strcmp(argv[1], "run"))
        return Run(directory, argc > 3 ? atoi(argv[3]) : 5);
    return 2;
}
