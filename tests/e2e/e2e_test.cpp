// Whole installs of the demonstration INF through tovrel.dll's exports, read
// back from the spooler, the disk, the registry and the service manager.
#include <gtest/gtest.h>

#include <windows.h>
#include <shlobj.h>
#include <winspool.h>

#include <string>
#include <vector>

#include "cabinet_maker.h"
#include "debug_output.h"
#include "message_box.h"
#include "registry_support.h"
#include "../service/service_test_support.h"
#include "test_support.h"

namespace {

typedef void(WINAPI *RepairProc)(const char *, const char *, const char *, const char *, int *, const char *);

const char Maker[] = "Halvern";
const char Model[] = "Plenarc Demo 600";
const std::string ModelKey = std::string("SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\") + Model;
const char OpenFailure[] = "\nCPrinterInf::Open,failure,";

std::string SystemDirectory()
{
    char path[MAX_PATH] = "";
    GetSystemDirectoryA(path, MAX_PATH);
    return std::string(path) + "\\";
}

// Where the spooler records the model's files: the version subdirectory of
// the driver directory ("3" for Wine's NT environments), which the INF's
// cabinet fills because Wine copies nothing there.
std::string VersionDirectory()
{
    char path[MAX_PATH] = "";
    DWORD needed = 0;
    GetPrinterDriverDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(path), MAX_PATH, &needed);
    return std::string(path) + "\\3\\";
}

struct CListedPrinter {
    int Count = 0;
    std::string Driver, Port, Processor;
};

std::string Text(const char *text) { return text ? text : ""; }

CListedPrinter ListedPrinter(const std::string &name, int *total = nullptr)
{
    CListedPrinter listed;
    DWORD needed = 0, count = 0;
    EnumPrintersA(PRINTER_ENUM_LOCAL, NULL, 2, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    if (!EnumPrintersA(PRINTER_ENUM_LOCAL, NULL, 2, buffer.data(), needed, &needed, &count))
        count = 0;
    const PRINTER_INFO_2A *printers = reinterpret_cast<const PRINTER_INFO_2A *>(buffer.data());
    for (DWORD i = 0; i < count; ++i) {
        if (lstrcmpiA(printers[i].pPrinterName, name.c_str()))
            continue;
        ++listed.Count;
        listed.Driver = Text(printers[i].pDriverName);
        listed.Port = Text(printers[i].pPortName);
        listed.Processor = Text(printers[i].pPrintProcessor);
    }
    if (total)
        *total = static_cast<int>(count);
    return listed;
}

// Every record of the model as one text, to see that a repair left it alone.
std::string ListedDriver(int *count)
{
    std::string text;
    *count = 0;
    DWORD needed = 0, returned = 0;
    EnumPrinterDriversA(NULL, NULL, 3, NULL, 0, &needed, &returned);
    std::vector<BYTE> buffer(needed + 4);
    if (!EnumPrinterDriversA(NULL, NULL, 3, buffer.data(), needed, &needed, &returned))
        return text;
    const DRIVER_INFO_3A *drivers = reinterpret_cast<const DRIVER_INFO_3A *>(buffer.data());
    for (DWORD i = 0; i < returned; ++i)
        if (!lstrcmpiA(drivers[i].pName, Model)) {
            ++*count;
            text += std::to_string(drivers[i].cVersion) + "|" + Text(drivers[i].pDriverPath) + "|" +
                    Text(drivers[i].pDataFile) + "|" + Text(drivers[i].pConfigFile) + "|" +
                    Text(drivers[i].pHelpFile) + "|" + Text(drivers[i].pMonitorName) + "|" +
                    Text(drivers[i].pDefaultDataType);
        }
    return text;
}

DWORD PrinterMark(const std::string &name)
{
    HANDLE printer = NULL;
    DWORD mark = 0, type = 0, needed = 0;
    if (OpenPrinterA(const_cast<char *>(name.c_str()), &printer, NULL)) {
        GetPrinterDataA(printer, const_cast<char *>("IsPlenarcValid"), &type, reinterpret_cast<BYTE *>(&mark),
                        sizeof mark, &needed);
        ClosePrinter(printer);
    }
    return mark;
}

bool ListsMonitor(const char *name)
{
    DWORD needed = 0, count = 0;
    EnumMonitorsA(NULL, 1, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    if (!EnumMonitorsA(NULL, 1, buffer.data(), needed, &needed, &count))
        return false;
    const MONITOR_INFO_1A *monitors = reinterpret_cast<const MONITOR_INFO_1A *>(buffer.data());
    for (DWORD i = 0; i < count; ++i)
        if (!lstrcmpiA(monitors[i].pName, name))
            return true;
    return false;
}

bool HasName(const std::vector<std::string> &names, const std::string &name)
{
    for (const std::string &n : names)
        if (!lstrcmpiA(n.c_str(), name.c_str()))
            return true;
    return false;
}

// The cabinet's files: name in the cabinet and where its content comes from.
struct CDemoFile {
    const char *Stored;
    const char *Built;  // a fixture from the build, or null for a text file
};
const CDemoFile DemoFiles[] = {
    {"PLENARC.DRV", nullptr},       {"PLENARC.PPD", nullptr},
    {"PLENARCU.CFG", nullptr},      {"PLENARC.HLP", nullptr},
    {"plenreg.dll", "selfreg_a.dll"}, {"plenver.dll", "versioned_2_0_0_0.dll"},
    {"tovrel_monitor.dll", "tovrel_monitor.dll"}, {"plensvc.exe", "fixture_service.exe"},
};

class DemoInstall : public ::testing::Test {
protected:
    void SetUp() override
    {
        Module = LoadLibraryA((BinaryDirectory() + "tovrel.dll").c_str());
        ASSERT_NE((HMODULE)NULL, Module);
        Repair = reinterpret_cast<RepairProc>(reinterpret_cast<void *>(GetProcAddress(Module, "Repair")));
        ASSERT_NE(nullptr, Repair);
        Inf = FixturePath("demo\\plenarc.inf");
        Scratch = ScratchDirectory();
        // The driver's data file names the INF that installed it, for discovery.
        std::vector<CCabinetEntry> entries;
        for (const CDemoFile &file : DemoFiles) {
            std::string source = file.Built ? BinaryDirectory() + file.Built : Scratch + file.Stored;
            if (!file.Built)
                WriteText(source, std::string("PLENARC.PPD") == file.Stored
                                      ? std::string("[") + Model + "]\r\nInstallINF=" + Inf + "\r\n"
                                      : std::string("Plenarc demo ") + file.Stored + "\r\n");
            entries.push_back({source, file.Stored, 0, 0, 0});
            Sources.push_back(source);
        }
        char driverDirectory[MAX_PATH] = "";
        DWORD needed = 0;
        GetPrinterDriverDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(driverDirectory), MAX_PATH, &needed);
        std::string directory = std::string(driverDirectory) + "\\";
        std::vector<std::string> members = MakeCabinetSet({directory, "plenarc", false, 0, 1}, entries);
        ASSERT_EQ(1u, members.size());
        ASSERT_TRUE(MoveFileExA(members[0].c_str(), (directory + "PLENARC.CAB").c_str(), MOVEFILE_REPLACE_EXISTING));
    }
    void TearDown() override
    {
        if (Module)
            FreeLibrary(Module);
    }

    // The reboot flag as Repair left it; -1 if the run stopped before its end.
    int RunRepair(const std::string &inf, const char *maker, const char *model, const std::string &name)
    {
        int reboot = -1;
        Repair(inf.c_str(), maker, model, name.c_str(), &reboot, "");
        return reboot;
    }

    HMODULE Module = NULL;
    RepairProc Repair = nullptr;
    std::string Inf, Scratch;
    std::vector<std::string> Sources;
};

TEST_F(DemoInstall, EveryStageLeavesItsMarkAndASecondRunOnlyRepairs)
{
    const std::string printer = "Plenarc Demo";
    CDebugOutputCapture probe;
    ASSERT_EQ(0, RunRepair(Inf, Maker, Model, printer)) << probe.Text();

    CListedPrinter listed = ListedPrinter(printer);
    EXPECT_EQ(1, listed.Count);
    EXPECT_EQ(Model, listed.Driver);
    EXPECT_EQ("LPT1:", listed.Port);
    EXPECT_EQ("winprint", listed.Processor);
    EXPECT_EQ(1u, PrinterMark(printer));
    int drivers = 0;
    std::string driver = ListedDriver(&drivers);
    EXPECT_EQ(1, drivers);
    EXPECT_NE(std::string::npos, driver.find("Plenarc Demo Monitor|RAW")) << driver;
    EXPECT_TRUE(ListsMonitor("Plenarc Demo Monitor"));

    // The cabinet's files reach both destinations, each once on record.
    std::vector<std::string> files = StoredValueNames(HKEY_LOCAL_MACHINE, ModelKey + "\\files");
    for (size_t i = 0; i < Sources.size(); ++i)
        for (const std::string &directory : {SystemDirectory(), VersionDirectory()}) {
            std::string target = directory + DemoFiles[i].Stored;
            EXPECT_EQ(ReadText(Sources[i]), ReadText(target)) << target;
            EXPECT_TRUE(HasName(files, target)) << target;
        }
    EXPECT_EQ(2 * Sources.size() + 4, files.size()) << "and the four CopyFiles paths";

    EXPECT_EQ(std::string(Model, sizeof Model),
              ReadStoredValue(HKEY_LOCAL_MACHINE, "Software\\Halvern\\Plenarc Demo", "Model").Data);
    EXPECT_EQ(SystemDirectory() + "plenreg.dll" + '\0',
              ReadStoredValue(HKEY_CURRENT_USER, "Software\\Tovrel Tests\\Self Registration", "plenreg.dll").Data);
    char programs[MAX_PATH] = "";
    ASSERT_TRUE(SHGetSpecialFolderPathA(NULL, programs, CSIDL_PROGRAMS, FALSE));
    EXPECT_TRUE(PathExists(std::string(programs) + "\\Plenarc Demo\\Plenarc Driver Help.lnk"));
    CServiceConfig service = ReadServiceConfig("PlenarcDemo");
    EXPECT_TRUE(service.Found);
    EXPECT_EQ("C:\\windows\\system32\\plensvc.exe", service.BinaryPathName);
    EXPECT_EQ("Plenarc Demo Service", service.DisplayName);
    EXPECT_EQ(16u, service.ServiceType);
    EXPECT_EQ(3u, service.StartType);
    EXPECT_EQ(1u, service.ErrorControl);

    const struct {
        const char *Subkey, *Name, *Data;
    } recorded[] = {
        {"", "PnP ID", "LPTENUM\\HalvernPlenarc_600"},
        {"", "Driver File", "PLENARC.DRV"},
        {"", "Data File", "PLENARC.PPD"},
        {"", "Config File", "PLENARCU.CFG"},
        {"", "Help File", "PLENARC.HLP"},
        {"", "Print Processor Name", "winprint"},
        {"", "Print Processor File", "winprint.dll"},
        {"", "Language Monitor Name", "Plenarc Demo Monitor"},
        {"", "Language Monitor File", "tovrel_monitor.dll"},
        {"", "Default Data Type", "RAW"},
        {"\\unregister", "plenreg.dll", "plenreg.dll"},
        {"\\registry", "HKLM,Software\\Halvern\\Plenarc Demo,Model,0,Plenarc Demo 600", "1"},
        {"\\Shortcuts", ",Plenarc Demo,Plenarc Driver Help,11,,PLENARC.HLP", "1"},
        {"\\services", "PlenarcDemo", "1"},
    };
    for (const auto &r : recorded) {
        std::string data = ReadStoredValue(HKEY_LOCAL_MACHINE, ModelKey + r.Subkey, r.Name).Data;
        EXPECT_STREQ(r.Data, data.c_str()) << r.Subkey << " " << r.Name;
    }

    // A second run puts back what went missing and leaves the rest alone.
    int printersBefore = 0, printersAfter = 0;
    ListedPrinter(printer, &printersBefore);
    ASSERT_TRUE(DeleteFileA((SystemDirectory() + "PLENARC.HLP").c_str()));
    DeleteKeyTree(HKEY_LOCAL_MACHINE, "Software\\Halvern\\Plenarc Demo");
    EXPECT_EQ(0, RunRepair(Inf, Maker, Model, printer));
    EXPECT_EQ(ReadText(Sources[3]), ReadText(SystemDirectory() + "PLENARC.HLP"));
    EXPECT_TRUE(ReadStoredValue(HKEY_LOCAL_MACHINE, "Software\\Halvern\\Plenarc Demo", "Model").Exists);
    EXPECT_EQ(1, ListedPrinter(printer, &printersAfter).Count);
    EXPECT_EQ(printersBefore, printersAfter);
    EXPECT_EQ(driver, ListedDriver(&drivers));
    EXPECT_EQ(1, drivers);
}

TEST_F(DemoInstall, RunDll32InstallsWithoutAPrompt)
{
    const std::string printer = "Plenarc RunDll";
    std::future<CSeenBox> box = AnswerBoxLater(Model, IDNO, 1500);
    std::vector<std::string> lines;
    std::string command = "rundll32.exe " + BinaryDirectory() + "tovrel.dll,Repair_RunDll /INF \"" + Inf +
                          "\" /MFG Halvern /DRV \"" + Model + "\" /NAME \"" + printer + "\"";
    EXPECT_EQ(0, RunCollectingDebugOutput(command, &lines));
    EXPECT_FALSE(box.get().Found) << "nothing was left for a restart";
    for (const std::string &line : lines)
        EXPECT_EQ(std::string::npos, line.find(OpenFailure)) << line;
    CListedPrinter listed = ListedPrinter(printer);
    EXPECT_EQ(1, listed.Count);
    EXPECT_EQ(Model, listed.Driver);
    EXPECT_EQ(1u, PrinterMark(printer));
}

// Install's ways to its INF, each read off the reboot flag (written only
// when every stage was reached) and the debug output of Open.
TEST_F(DemoInstall, InstallFindsItsInfOrStops)
{
    const std::string printer = "Plenarc Found";
    ASSERT_EQ(0, RunRepair(Inf, Maker, Model, printer));
    std::string wrongFamily = Scratch + "win95.inf";
    std::string text = ReadText(Inf);
    text.replace(text.find("$Chicago$"), 9, "$Windows 95$");
    WriteText(wrongFamily, text);
    const std::string missing = Scratch + "missing.inf";

    const struct {
        const char *Label;
        std::string Inf;
        const char *Maker, *Model;
        bool NullReboot;
        int Reboot;
        std::string Debug;
    } cases[] = {
        {"all three from the printer's data file", "", "", "", false, 0, ""},
        {"missing file, then discovery", missing, "Nobody", "Nothing", false, 0,
         std::string(OpenFailure) + "Unable to open the file"},
        {"wrong family: the store is taken, the second Open fails", wrongFamily, Maker, Model, false, 7,
         std::string(OpenFailure) + "this inf is for Win9x only." + OpenFailure + "Unable to open the file"},
        {"no reboot pointer", Inf, Maker, Model, true, 7, ""},
    };
    for (const auto &c : cases) {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, "Software\\Halvern\\Plenarc Demo");
        CDebugOutputCapture capture;
        int reboot = 7;
        Repair(c.Inf.c_str(), c.Maker, c.Model, printer.c_str(), c.NullReboot ? nullptr : &reboot, "");
        EXPECT_EQ(c.Reboot, reboot) << c.Label;
        EXPECT_EQ(c.Debug, capture.Text()) << c.Label;
        // Only a run that reached its stages wrote the AddReg line again.
        EXPECT_EQ(c.Reboot == 0 || c.NullReboot,
                  ReadStoredValue(HKEY_LOCAL_MACHINE, "Software\\Halvern\\Plenarc Demo", "Model").Exists)
            << c.Label;
    }
    EXPECT_EQ(1, ListedPrinter(printer).Count);
}

// A busy file on the 9x family waits for the restart, and RunDll32 offers it
// under the driver's name.
class DemoInstallWin98 : public DemoInstall {};

TEST_F(DemoInstallWin98, BusyTargetOffersTheReboot)
{
    const std::string target = SystemDirectory() + "plenver.dll";
    ASSERT_TRUE(CopyFileA((BinaryDirectory() + "versioned_1_0_0_5.dll").c_str(), target.c_str(), FALSE));
    HMODULE busy = LoadLibraryA(target.c_str());
    ASSERT_NE((HMODULE)NULL, busy);
    std::string before = ReadText(target);

    std::future<CSeenBox> answer = AnswerBoxLater(Model, IDNO);
    std::string command = "rundll32.exe " + BinaryDirectory() + "tovrel.dll,Repair_RunDll /INF \"" + Inf +
                          "\" /MFG Halvern /DRV \"" + Model + "\" /NAME \"Plenarc Busy\"";
    EXPECT_EQ(0, RunCollectingDebugOutput(command, nullptr));
    CSeenBox box = answer.get();
    ASSERT_TRUE(box.Found) << "no box headed " << Model;
    EXPECT_EQ(0u, box.Text.find("A system reboot is required")) << box.Text;
    EXPECT_EQ(2u, box.Buttons.size());

    EXPECT_EQ(before, ReadText(target)) << "the busy file stays until the restart";
    EXPECT_EQ(ReadText(Sources[5]), ReadText(target + ".new_file"));
    char pending[MAX_PATH] = "";
    GetPrivateProfileStringA("RENAME", target.c_str(), "", pending, MAX_PATH, "C:\\windows\\WININIT.INI");
    EXPECT_STRCASEEQ((target + ".new_file").c_str(), pending);
    FreeLibrary(busy);
}

}  // namespace
