// An install's fixed cost and its cost per cabinet file, each beside the
// platform's own work on the same input, in one process.
//   install_bench open DIR REPEATS [SETUPAPI_LIMIT]
//       printer-style INFs of 1 KB, 100 KB, 1 MB and 10 MB: Repair with a
//       real manufacturer and an absent model (it stops after loading,
//       validating and reading the manufacturer section), setupapi's
//       SetupOpenInfFileA + SetupCloseInfFile (only up to SETUPAPI_LIMIT
//       bytes, default 2 MB: 10 MB takes minutes), and a plain read with one
//       pass over the bytes.
//   install_bench destinations DIR REPEATS
//       a model whose INF gives 10,000 and then 100,000 cabinets a
//       destination each, with libraries to register that are nowhere:
//       Repair through every stage, and Repair of a model that is not there
//       (the INF read, checked and mapped, no stage run).
//   install_bench copy DIR REPEATS
//       cabinets of 10, 100 and 1,000 small files through the copy stage,
//       through the extraction alone, and the platform's own per-file work:
//       a file put in place whole (CopyFileA to a temporary name, flushed,
//       MoveFileExA to its name) and one registry value opened, set and
//       closed; and the same with CopyFileA straight onto the name.
//   install_bench discovery DIR REPEATS
//       FindInf over a DevicePath of 100, 500 and 1,500 INFs beside a
//       setupapi walk of the same folder; see discovery_bench.cpp.
// Prints "figure open BYTES repair MS setupapi MS floor MS",
// "figure destinations LINES repair MS open MS" and
// "figure copy FILES stage US extract US platform US inplace US" (medians,
// per file for copy; a setupapi of -1 was not run).
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench_support.h"
#include "cabinet_set.h"
#include "discovery_bench.h"
#include "entry/printer_inf.h"
#include "files/cabinet.h"
#include "files/file_spec.h"
#include "support/handles.h"
#include "tovrel.h"

// After the project's headers: its DIRID_ names have the values setupapi's
// macros give them, and must be declared before the macros exist.
#include <setupapi.h>

namespace {

const size_t InfSizes[] = {1024, 100 * 1024, 1024 * 1024, 10 * 1024 * 1024};
const int CabinetSizes[] = {10, 100, 1000};
const size_t CabinetFileSize = 2048;
const size_t DefaultSetupapiLimit = 2 * 1024 * 1024;
const char BenchRecordKey[] = "SOFTWARE\\Tovrel Bench\\Record";

// ------------------------------------------------------------ INF open

const char InfHead[] =
    "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
    "ClassGUID={4D36E979-E325-11CE-BFC1-08002BE10318}\r\nProvider=%Maker%\r\n\r\n"
    "[Manufacturer]\r\nHalvern=Halvern\r\n\r\n"
    "[DestinationDirs]\r\nDefaultDestDir=66000\r\n\r\n";

// The sections of one model, as shipped printer INFs have them: install,
// data, file list and a destination.
std::string ModelSections(int i)
{
    char text[1024];
    snprintf(text, sizeof text,
             "[MODEL_%d]\r\nDataSection=MODEL_%d_DATA\r\nCopyFiles=MODEL_%d_FILES,@MODEL%d.HLP\r\n"
             "CopyCabs=MODEL%d.CAB\r\nAddReg=MODEL_%d_REG\r\n\r\n"
             "[MODEL_%d_DATA]\r\nDriverFile=MODEL%d.DRV\r\nDataFile=MODEL%d.PPD\r\nConfigFile=MODEL%dU.DLL\r\n"
             "HelpFile=MODEL%d.HLP\r\nDefaultDataType=RAW\r\n\r\n"
             "[MODEL_%d_FILES]\r\nMODEL%d.DRV\r\nMODEL%d.PPD\r\nMODEL%dU.DLL\r\n\r\n"
             "[MODEL_%d_REG]\r\nHKLM,Software\\Halvern\\Model %d,Model,0,%%Model%d%%\r\n\r\n",
             i, i, i, i, i, i, i, i, i, i, i, i, i, i, i, i, i, i);
    return text;
}

std::string PrinterInf(size_t size)
{
    std::string models = "[Halvern]\r\n", sections, strings = "[Strings]\r\nMaker=\"Halvern\"\r\n";
    for (int i = 0; sizeof InfHead + models.size() + sections.size() + strings.size() < size; ++i) {
        models += "\"Plenarc Model " + std::to_string(i) + "\"=MODEL_" + std::to_string(i) +
                  ",LPTENUM\\HalvernModel_" + std::to_string(i) + "\r\n";
        sections += ModelSections(i);
        strings += "Model" + std::to_string(i) + "=\"Plenarc Model " + std::to_string(i) + "\"\r\n";
    }
    return InfHead + models + "\r\n" + sections + strings;
}

double SetupapiOpen(const std::string &inf)
{
    bool opened = true;
    double ms = Milliseconds([&] {
        HINF handle = SetupOpenInfFileA(inf.c_str(), NULL, INF_STYLE_WIN4, NULL);
        opened = handle != INVALID_HANDLE_VALUE;
        if (opened)
            SetupCloseInfFile(handle);
    });
    return opened ? ms : -1;
}

// The least any reader must do: read the file and look at every byte once.
void ReadAndPass(const std::string &inf)
{
    CFileHandle file(CreateFileA(inf.c_str(), GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL));
    std::vector<char> bytes(GetFileSize(file.Get(), NULL));
    DWORD read = 0;
    ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, NULL);
    volatile size_t lines = std::count(bytes.begin(), bytes.end(), '\n');
    (void)lines;
}

int Open(const std::string &directory, int repeats, size_t setupapiLimit)
{
    for (size_t size : InfSizes) {
        std::string inf = directory + "open" + std::to_string(size) + ".inf";
        std::string text = PrinterInf(size);
        if (!WriteFileText(inf, text))
            return 1;
        int rounds = size > 2 * 1024 * 1024 ? std::min(repeats, 3) : repeats;
        double repair = MedianOf(rounds, [&] {
            int reboot = 0;
            Repair(inf.c_str(), "Halvern", "Absent Model", "Bench Printer", &reboot, "");
        });
        // setupapi's open grows with the square of the sections: one round
        // from 1 MB on.
        double setupapi = -1;
        if (text.size() <= setupapiLimit)
            setupapi = size < 1024 * 1024 ? MedianOf(rounds, [&] { SetupapiOpen(inf); }) : SetupapiOpen(inf);
        double floor = MedianOf(rounds, [&] { ReadAndPass(inf); });
        printf("figure open %u repair %.3f setupapi %.3f floor %.3f\n", static_cast<unsigned>(text.size()), repair,
               setupapi, floor);
        fflush(stdout);
    }
    return 0;
}

// ------------------------------------------------------------ destinations

const int DestinationLines[] = {10000, 100000};

std::string ManyDestinationsInf(int lines)
{
    std::string text = std::string(InfHead) +
                       "[Halvern]\r\nBench=Inst\r\n[Inst]\r\nDataSection=Data\r\nCopyFiles=@drv.hlp\r\nCopyCabs=\r\n"
                       "RegisterFiles=nowhere1.dll,nowhere2.dll\r\n[Data]\r\nDriverFile=drv.drv\r\nDataFile=drv.ppd\r\n"
                       "ConfigFile=drv.cfg\r\nHelpFile=drv.hlp\r\nPrintProcessor=winprint\r\n[DestinationDirs.CAB]\r\n";
    for (int i = 0; i < lines; ++i)
        text += "CAB" + std::to_string(i) + "=11,sub" + std::to_string(i) + "\r\n";
    return text + "[Strings]\r\nMaker=\"Halvern\"\r\n";
}

int Destinations(const std::string &directory, int repeats)
{
    for (int lines : DestinationLines) {
        std::string inf = directory + "destinations" + std::to_string(lines) + ".inf";
        if (!WriteFileText(inf, ManyDestinationsInf(lines)))
            return 1;
        double repair = MedianOf(repeats, [&] {
            int reboot = 0;
            Repair(inf.c_str(), "Halvern", "Bench", "Bench Printer", &reboot, "");
        });
        // Reading, checking and mapping the INF alone: the stages must add
        // no growth of their own to it.
        double open = MedianOf(repeats, [&] {
            int reboot = 0;
            Repair(inf.c_str(), "Halvern", "Absent Model", "Bench Printer", &reboot, "");
        });
        printf("figure destinations %d repair %.3f open %.3f\n", lines, repair, open);
        fflush(stdout);
    }
    return 0;
}

// ------------------------------------------------------------ cabinets

std::string DriverDirectory()
{
    CFileSpec spec;
    spec.Resolve(FileSpecPrinterDrivers);
    return spec.DirectoryPath();
}

void ClearDirectory(const std::string &directory)
{
    WIN32_FIND_DATAA found;
    CFindHandle find(FindFirstFileA((directory + "*").c_str(), &found));
    if (!find.IsValid())
        return;
    do
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            DeleteFileA((directory + found.cFileName).c_str());
    while (FindNextFileA(find.Get(), &found));
}

// A cabinet of count small files in the driver directory, their sources
// kept in DIR\sourceN\ for the platform's own figure.
bool MakeCabinet(const std::string &directory, int count)
{
    std::string source = directory + "source" + std::to_string(count) + "\\";
    CreateDirectoryA(source.c_str(), NULL);
    std::vector<CCabinetEntry> entries;
    for (int i = 0; i < count; ++i) {
        std::string name = "f" + std::to_string(i) + ".dat";
        if (!WriteFileText(source + name, std::string(CabinetFileSize, static_cast<char>('a' + i % 26))))
            return false;
        entries.push_back(CCabinetEntry{source + name, name, 0, 0, 0});
    }
    CCabinetSetPlan plan = {DriverDirectory(), "bench" + std::to_string(count) + "_", false, 0, 1};
    return MakeCabinetSet(plan, entries).size() == 1;
}

// A model whose one cabinet goes to INF id 1, which the bench points at
// DIR\out\ so that every round starts from an empty destination.
bool OpenCopyModel(CPrinterInf &printer, const std::string &directory, int count)
{
    std::string inf = directory + "copy" + std::to_string(count) + ".inf";
    std::string cabinet = "bench" + std::to_string(count) + "_0";
    std::string text = std::string(InfHead) + "[Halvern]\r\nBench=Inst\r\n[Inst]\r\nDataSection=Data\r\nCopyCabs=" +
                       cabinet + ".cab\r\n[Data]\r\nDriverFile=drv.dll\r\nDataFile=drv.dat\r\nConfigFile=cfg.dll\r\nHelpFile=drv.hlp\r\n[DestinationDirs.CAB]\r\n" + cabinet +
                       "=1\r\n[Strings]\r\nMaker=\"Halvern\"\r\n";
    if (!WriteFileText(inf, text) || !printer.Open(inf.c_str()) ||
        !printer.ReadDeviceSection("Halvern", "Bench", "Bench"))
        return false;
    printer.DirectoryIds[1] = CBoundedString((directory + "out\\").c_str());
    return true;
}

// What the platform itself does for each file an install puts in place:
// whole, through a temporary name and a flush, or straight onto its name.
void PlatformCopies(const std::string &source, const std::string &out, int count, bool whole)
{
    for (int i = 0; i < count; ++i) {
        std::string name = "f" + std::to_string(i) + ".dat", target = out + name, temporary = out + "~" + name;
        if (!whole) {
            CopyFileA((source + name).c_str(), target.c_str(), TRUE);
        } else if (CopyFileA((source + name).c_str(), temporary.c_str(), TRUE)) {
            CFileHandle copy(CreateFileA(temporary.c_str(), GENERIC_WRITE, 0, NULL, OPEN_EXISTING, 0, NULL));
            FlushFileBuffers(copy.Get());
            copy.Reset();
            MoveFileExA(temporary.c_str(), target.c_str(), 0);
        }
        CRegistryHandle key;
        if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, BenchRecordKey, 0, NULL, 0, KEY_ALL_ACCESS, NULL, key.Put(), NULL) ==
            ERROR_SUCCESS)
            RegSetValueExA(key.Get(), target.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>("1"), 2);
    }
}

int Copy(const std::string &directory, int repeats)
{
    std::string out = directory + "out\\", scratch = directory + "scratch\\";
    CreateDirectoryA(out.c_str(), NULL);
    CreateDirectoryA(scratch.c_str(), NULL);
    for (int count : CabinetSizes) {
        CPrinterInf printer;
        if (!MakeCabinet(directory, count) || !OpenCopyModel(printer, directory, count))
            return 1;
        std::string cabinet = DriverDirectory() + "bench" + std::to_string(count) + "_0.cab";
        std::string source = directory + "source" + std::to_string(count) + "\\";
        double stage = MedianOf(repeats, [&] { ClearDirectory(out); printer.CopyFiles(); });
        double extract = MedianOf(repeats, [&] {
            ClearDirectory(scratch);
            CCabinetExtractor extractor;
            extractor.SetDestination(scratch.c_str());
            extractor.Extract(cabinet.c_str(), 1);
        });
        double platform = MedianOf(repeats, [&] { ClearDirectory(out); PlatformCopies(source, out, count, true); });
        double inplace = MedianOf(repeats, [&] { ClearDirectory(out); PlatformCopies(source, out, count, false); });
        // The clearing is in each figure alike; it is small beside them.
        printf("figure copy %d stage %.1f extract %.1f platform %.1f inplace %.1f\n", count, stage * 1000 / count,
               extract * 1000 / count, platform * 1000 / count, inplace * 1000 / count);
        fflush(stdout);
    }
    return 0;
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc < 4) {
        fprintf(stderr, "usage: install_bench open|destinations|copy|discovery DIR REPEATS [SETUPAPI_LIMIT]\n");
        return 2;
    }
    std::string directory = argv[2];
    if (directory.back() != '\\')
        directory += '\\';
    int repeats = std::max(1, atoi(argv[3]));
    if (!strcmp(argv[1], "open"))
        return Open(directory, repeats, argc > 4 ? strtoul(argv[4], NULL, 10) : DefaultSetupapiLimit);
    if (!strcmp(argv[1], "copy"))
        return Copy(directory, repeats);
    if (!strcmp(argv[1], "destinations"))
        return Destinations(directory, repeats);
    if (!strcmp(argv[1], "discovery"))
        return Discovery(directory, repeats);
    return 2;
}
