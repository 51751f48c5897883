// The uninstall's cost per file beside the platform's own work on as many
// files, in one process.
//   uninstall_bench DIR REPEATS
//       for 100 and 1,000 files: a model installed through Repair from a
//       cabinet of that many small files, with a service, a driver and a
//       printer, then taken back by tovrel-uninstall's own steps (timed);
//       the same model with none of those files, for the fixed part; and
//       the platform deleting as many files with DeleteFileA, and for each
//       one registry value with RegDeleteValueA on a key kept open.
// Prints "figure uninstall FILES run MS fixed MS platform MS" (medians of
// REPEATS rounds, each of which takes every figure once; whole runs in
// milliseconds), or fails when a run leaves anything of the model.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "bench_support.h"
#include "cabinet_set.h"
#include "files/file_spec.h"
#include "support/handles.h"
#include "tovrel.h"
#include "uninstall/uninstall_steps.h"

namespace {

const int FileCounts[] = {100, 1000};
const size_t BenchFileSize = 2048;
const char Model[] = "Bench Uninstall";
const char PlatformKey[] = "SOFTWARE\\Tovrel Bench\\Uninstall";
const char *const DriverFiles[] = {"BENCH.DRV", "BENCH.PPD", "BENCHU.CFG", "BENCH.HLP"};

std::string DriverDirectory()
{
    CFileSpec spec;
    spec.Resolve(FileSpecPrinterDrivers);
    return spec.DirectoryPath();
}

// The model's INF: its driver's four files and count more in one cabinet,
// a service and the printer that Repair makes on the driver.
std::string BenchInf(const std::string &cabinet)
{
    return "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
           "ClassGUID={4D36E979-E325-11CE-BFC1-08002BE10318}\r\nProvider=Halvern\r\n"
           "[Manufacturer]\r\nHalvern=Halvern\r\n[Halvern]\r\n\"" + std::string(Model) + "\"=Inst\r\n"
           "[Inst]\r\nDataSection=Data\r\nCopyFiles=@BENCH.DRV,@BENCH.PPD,@BENCHU.CFG,@BENCH.HLP\r\nCopyCabs=" +
           cabinet + ".cab\r\n[Data]\r\nDriverFile=BENCH.DRV\r\nDataFile=BENCH.PPD\r\nConfigFile=BENCHU.CFG\r\n"
           "HelpFile=BENCH.HLP\r\nPrintProcessor=\"winprint,winprint.dll\"\r\nDefaultDataType=RAW\r\n"
           "[Inst.Services]\r\nAddService=TovrelBench,BenchService\r\n[BenchService]\r\n"
           "ServiceBinary=C:\\windows\\system32\\benchsvc.exe\r\nServiceType=16\r\nStartType=3\r\n"
           "[DestinationDirs]\r\nDefaultDestDir=66000\r\n[DestinationDirs.CAB]\r\n" + cabinet + "=66000\r\n";
}

// Sources of count small files and the driver's four, kept in
// DIR\sourceN\, and the cabinet of them in the driver directory.
bool MakeBenchCabinet(const std::string &directory, int count, std::string &cabinet)
{
    std::string source = directory + "source" + std::to_string(count) + "\\";
    CreateDirectoryA(source.c_str(), NULL);
    std::vector<CCabinetEntry> entries;
    std::vector<std::string> names(DriverFiles, DriverFiles + 4);
    for (int i = 0; i < count; ++i)
        names.push_back("u" + std::to_string(i) + ".dat");
    for (const std::string &name : names) {
        if (!WriteFileText(source + name, std::string(BenchFileSize, 'u')))
            return false;
        entries.push_back(CCabinetEntry{source + name, name, 0, 0, 0});
    }
    cabinet = "ubench" + std::to_string(count) + "_";
    CCabinetSetPlan plan = {DriverDirectory(), cabinet, false, 0, 1};
    cabinet += "0";
    return MakeCabinetSet(plan, entries).size() == 1;
}

// One uninstall as the program runs it, without its output; false when it
// leaves anything of the model.
bool UninstallModel(int files)
{
    UninstallRecord record;
    if (!ReadUninstallRecord(Model, record))
        return false;
    SortRecord(record);
    CUninstallRun run(record, false, true);
    TakeBack(run);
    const UninstallTally &tally = run.Tally();
    return tally.Complete() && tally.Pending == 0 && tally.Removed >= files;
}

// The model installed anew, untimed, and its uninstall timed; false when
// the uninstall leaves anything of it.
bool TimeUninstall(const std::string &inf, int files, double &milliseconds)
{
    int reboot = 0;
    bool complete = false;
    Repair(inf.c_str(), "Halvern", Model, "Bench Printer", &reboot, "");
    milliseconds = Milliseconds([&] { complete = UninstallModel(files); });
    return complete;
}

// The platform's least work for as many files: each deleted, and one value
// of a key that stays open deleted with it.
double TimePlatform(const std::string &source, int count)
{
    CRegistryHandle key;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, PlatformKey, 0, NULL, 0, KEY_ALL_ACCESS, NULL, key.Put(), NULL);
    std::vector<std::string> targets;
    for (int i = 0; i < count; ++i) {
        targets.push_back(DriverDirectory() + "p" + std::to_string(i) + ".dat");
        CopyFileA((source + "u" + std::to_string(i) + ".dat").c_str(), targets[i].c_str(), FALSE);
        RegSetValueExA(key.Get(), targets[i].c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>("1"), 2);
    }
    return Milliseconds([&] {
        for (const std::string &target : targets) {
            DeleteFileA(target.c_str());
            RegDeleteValueA(key.Get(), target.c_str());
        }
    });
}

double Median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

struct Figures {
    std::vector<double> Run, Platform;
};

// Every figure of a round is taken within moments of the others, so that a
// machine that gets busier or quieter meanwhile tells on each alike.
bool Round(const std::string &directory, std::vector<double> &fixed, std::map<int, Figures> &figures)
{
    double milliseconds = 0;
    if (!TimeUninstall(directory + "ubench0.inf", 0, milliseconds))
        return false;
    fixed.push_back(milliseconds);
    for (int count : FileCounts) {
        if (!TimeUninstall(directory + "ubench" + std::to_string(count) + ".inf", count, milliseconds)) {
            fprintf(stderr, "uninstall_bench: the uninstall of %d files left something of the model\n", count);
            return false;
        }
        figures[count].Run.push_back(milliseconds);
        figures[count].Platform.push_back(TimePlatform(directory + "source" + std::to_string(count) + "\\", count));
    }
    return true;
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        fprintf(stderr, "usage: uninstall_bench DIR REPEATS\n");
        return 2;
    }
    std::string directory = argv[1];
    if (directory.back() != '\\')
        directory += '\\';
    int repeats = std::max(1, atoi(argv[2]));
    for (int count : {0, FileCounts[0], FileCounts[1]}) {
        std::string cabinet;
        if (!MakeBenchCabinet(directory, count, cabinet) ||
            !WriteFileText(directory + "ubench" + std::to_string(count) + ".inf", BenchInf(cabinet)))
            return 1;
    }
    std::vector<double> fixed;
    std::map<int, Figures> figures;
    for (int round = 0; round < repeats; ++round)
        if (!Round(directory, fixed, figures))
            return 1;
    for (int count : FileCounts)
        printf("figure uninstall %d run %.3f fixed %.3f platform %.3f\n", count, Median(figures[count].Run),
               Median(fixed), Median(figures[count].Platform));
    return 0;
}
