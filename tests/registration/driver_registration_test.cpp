#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/driver_registration.h"
#include "registration/spooler.h"
#include "test_support.h"

namespace {

// What the spooler lists for one driver of this machine's own environment.
struct CListedDriver {
    bool Found = false;
    DWORD Version = 0;
    std::string Environment, DriverPath, DataFile, ConfigFile, HelpFile, MonitorName, DefaultDataType;
    std::vector<std::string> DependentFiles;
};

std::string Text(const char *text) { return text ? text : ""; }

CListedDriver ListedDriver(const char *name)
{
    CListedDriver listed;
    DWORD needed = 0, count = 0;
    EnumPrinterDriversA(NULL, NULL, 3, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    if (!EnumPrinterDriversA(NULL, NULL, 3, buffer.data(), needed, &needed, &count))
        return listed;
    DRIVER_INFO_3A *drivers = reinterpret_cast<DRIVER_INFO_3A *>(buffer.data());
    for (DWORD i = 0; i < count; ++i) {
        if (lstrcmpiA(drivers[i].pName, name))
            continue;
        listed.Found = true;
        listed.Version = drivers[i].cVersion;
        listed.Environment = Text(drivers[i].pEnvironment);
        listed.DriverPath = Text(drivers[i].pDriverPath);
        listed.DataFile = Text(drivers[i].pDataFile);
        listed.ConfigFile = Text(drivers[i].pConfigFile);
        listed.HelpFile = Text(drivers[i].pHelpFile);
        listed.MonitorName = Text(drivers[i].pMonitorName);
        listed.DefaultDataType = Text(drivers[i].pDefaultDataType);
        for (const char *file = drivers[i].pDependentFiles; file && *file; file += std::strlen(file) + 1)
            listed.DependentFiles.push_back(file);
    }
    return listed;
}

std::string DriverDirectory()
{
    char directory[MAX_PATH];
    PrinterDriverDirectory(NULL, directory);
    return std::string(directory) + "\\";
}

// The spooler files a driver below the directory that was passed, in the
// subdirectory of its version ("3" for Wine's NT environments), and gives
// the paths back from there.
void ExpectInDriverDirectory(const std::string &directory, const std::string &path, const std::string &name)
{
    ASSERT_GE(path.size(), directory.size() + name.size()) << path;
    EXPECT_EQ(0, lstrcmpiA(directory.c_str(), path.substr(0, directory.size()).c_str())) << path;
    EXPECT_EQ(name, path.substr(path.size() - name.size())) << path;
    std::string between = path.substr(directory.size(), path.size() - name.size() - directory.size());
    EXPECT_TRUE(between.empty() || between == "0\\" || between == "3\\") << path;
}

// A model whose config file is no library: the spooler loads the config
// file when a printer is added, and a library without the printer
// interface would bring the process down.
void FillModel(CPrinterInf &inf, const char *model)
{
    inf.Model = CBoundedString(model);
    inf.DriverFile = CBoundedString("tvdrv.dll");
    inf.DataFile = CBoundedString("tvdata.ppd");
    inf.ConfigFile = CBoundedString("tvui.txt");
    inf.HelpFile = CBoundedString("tvhelp.hlp");
    inf.DefaultDataType = CBoundedString("RAW");
}

TEST(NewDriverRecord, VersionAndEnvironmentFollowTheSystem)
{
    const char *nt = sizeof(void *) == 8 ? "Windows x64" : "Windows NT x86";
    static const struct {
        int Family, Release;
        DWORD Version;
        const char *Environment;
    } cases[] = {
        {COsVersion::FamilyWindowsNt, 6, 3, "nt"},
        {COsVersion::FamilyWindowsNt, 5, 2, "nt"},
        {COsVersion::FamilyWindowsNt, 4, 2, "nt"},
        {COsVersion::FamilyWindowsNt, 0, 2, "nt"},
        {COsVersion::FamilyWindows9x, 3, 2, "Windows 4.0"},
        {COsVersion::FamilyWindows9x, 2, 2, "Windows 4.0"},
        {COsVersion::FamilyWin32s, 1, 2, nullptr},
        {COsVersion::FamilyUnknown, 0, 2, nullptr},
    };
    for (const auto &c : cases) {
        COsVersion os;
        os.Family = c.Family;
        os.Release = c.Release;
        EXPECT_EQ(c.Version, NewDriverVersion(os)) << c.Family << "/" << c.Release;
        const char *expected = c.Environment && !std::strcmp(c.Environment, "nt") ? nt : c.Environment;
        EXPECT_STREQ(expected, NewDriverEnvironment(os)) << c.Family << "/" << c.Release;
    }
}

TEST(DriverFileField, AStoredDirectoryStaysAndOnlyTheNameFollows)
{
    static const struct {
        const char *Stored, *File, *Expected;  // Expected null: unchanged
    } cases[] = {
        {"drv.dll", "DRV.DLL", nullptr},
        {"old.dll", "new.dll", "new.dll"},
        {nullptr, "new.dll", "new.dll"},
        {nullptr, "", nullptr},
        {"C:\\Stored\\Dir\\drv.dll", "DRV.dll", nullptr},
        {"C:\\Stored\\Dir\\drv.dll", "new.dll", "C:\\Stored\\Dir\\new.dll"},
        {"c:\\other\\old.dll", "sub.dll", "c:\\other\\sub.dll"},
        {"\\\\server\\share\\old.dll", "new.dll", "new.dll"},
        {"C:\\Stored\\old.dll", "", "C:\\Stored\\"},
    };
    for (const auto &c : cases) {
        CFileSpec spec;
        const char *updated = UpdatedDriverFile(c.Stored, c.File, spec);
        if (!c.Expected)
            EXPECT_EQ(nullptr, updated) << Text(c.Stored) << " / " << c.File;
        else
            EXPECT_STRCASEEQ(c.Expected, updated) << Text(c.Stored) << " / " << c.File;
    }
}

TEST(PrintProcessorAndMonitor, NothingToDoWithoutBothNameAndFile)
{
    static const struct {
        const char *Name, *File;
    } cases[] = {{"", ""}, {"Tovrel Half", ""}, {"", "tovrel_half.dll"}};
    for (const auto &c : cases) {
        CPrinterInf inf;
        inf.PrintProcessorName = CBoundedString(c.Name);
        inf.PrintProcessorFile = CBoundedString(c.File);
        inf.MonitorName = CBoundedString(c.Name);
        inf.MonitorFile = CBoundedString(c.File);
        EXPECT_EQ(1, inf.InstallPrintProcessor()) << c.Name << "/" << c.File;
        EXPECT_EQ(1, inf.InstallMonitor()) << c.Name << "/" << c.File;
    }
    // Had the monitor stage called the spooler, the missing library would
    // have failed the call; no monitor of that name may appear either.
    DWORD needed = 0, count = 0;
    EnumMonitorsA(NULL, 2, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    ASSERT_TRUE(EnumMonitorsA(NULL, 2, buffer.data(), needed, &needed, &count));
    MONITOR_INFO_2A *monitors = reinterpret_cast<MONITOR_INFO_2A *>(buffer.data());
    for (DWORD i = 0; i < count; ++i)
        EXPECT_STRNE("Tovrel Half", monitors[i].pName);
}

TEST(PrintProcessor, TheSpoolerTakesTheBareFileName)
{
    CPrinterInf inf;
    inf.PrintProcessorName = CBoundedString("winprint");
    inf.PrintProcessorFile = CBoundedString("localspl.dll");
    EXPECT_EQ(1, inf.InstallPrintProcessor());
}

TEST(Monitor, AddedOnceAndFoundInstalledTheSecondTime)
{
    char system[MAX_PATH];
    GetSystemDirectoryA(system, MAX_PATH);
    std::string target = std::string(system) + "\\tovrel_monitor.dll";
    ASSERT_TRUE(CopyFileA((BinaryDirectory() + "tovrel_monitor.dll").c_str(), target.c_str(), FALSE))
        << GetLastError();

    CPrinterInf inf;
    inf.MonitorName = CBoundedString("Tovrel Test Monitor");
    inf.MonitorFile = CBoundedString("tovrel_monitor.dll");
    EXPECT_EQ(1, inf.InstallMonitor()) << GetLastError();

    DWORD needed = 0, count = 0;
    EnumMonitorsA(NULL, 2, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    ASSERT_TRUE(EnumMonitorsA(NULL, 2, buffer.data(), needed, &needed, &count));
    MONITOR_INFO_2A *monitors = reinterpret_cast<MONITOR_INFO_2A *>(buffer.data());
    bool listed = false;
    for (DWORD i = 0; i < count; ++i)
        if (!lstrcmpiA(monitors[i].pName, "Tovrel Test Monitor")) {
            listed = true;
            EXPECT_STRCASEEQ("tovrel_monitor.dll", monitors[i].pDLLName);
        }
    EXPECT_TRUE(listed);

    SetLastError(0);
    EXPECT_EQ(1, inf.InstallMonitor());
    EXPECT_EQ(static_cast<DWORD>(PrintMonitorAlreadyInstalled), GetLastError());
}

TEST(Monitor, AnyOtherRefusalFailsTheStage)
{
    CPrinterInf inf;
    inf.MonitorName = CBoundedString("Tovrel Missing Monitor");
    inf.MonitorFile = CBoundedString("tovrel_no_such_monitor.dll");
    EXPECT_EQ(0, inf.InstallMonitor());
}

void ExpectNewDriverListed(const char *environment)
{
    CPrinterInf inf;
    FillModel(inf, "Tovrel New Driver");
    inf.MonitorName = CBoundedString("");
    EXPECT_EQ(0, inf.UpdateInstalledDrivers());
    EXPECT_FALSE(ListedDriver("Tovrel New Driver").Found);

    CDestinationList names;
    for (const char *name : {"A.DLL", "b.dll", "Extra"})
        names.push_back(CBoundedString(name));
    EXPECT_EQ(1, inf.AddNewDriver(names)) << GetLastError();

    CListedDriver listed = ListedDriver("Tovrel New Driver");
    ASSERT_TRUE(listed.Found);
    EXPECT_EQ(environment, listed.Environment);
    std::string directory = DriverDirectory();
    ExpectInDriverDirectory(directory, listed.DriverPath, "tvdrv.dll");
    ExpectInDriverDirectory(directory, listed.DataFile, "tvdata.ppd");
    ExpectInDriverDirectory(directory, listed.ConfigFile, "tvui.txt");
    ExpectInDriverDirectory(directory, listed.HelpFile, "tvhelp.hlp");
    EXPECT_EQ("RAW", listed.DefaultDataType);
    std::vector<std::string> dependent = {"A.DLL", "b.dll", "Extra"};
    ASSERT_EQ(dependent.size(), listed.DependentFiles.size());
    for (size_t i = 0; i < dependent.size(); ++i)
        ExpectInDriverDirectory(directory, listed.DependentFiles[i], dependent[i]);
    // The spooler knows it now: the first half of the stage takes over.
    EXPECT_EQ(1, inf.UpdateInstalledDrivers());
}

TEST(NewDriver, ListedWithTheMachinesEnvironmentAndDriverDirectory)
{
    ExpectNewDriverListed(sizeof(void *) == 8 ? "Windows x64" : "Windows NT x86");
    // Wine records every driver of an NT environment as version 3.
    EXPECT_EQ(3u, ListedDriver("Tovrel New Driver").Version);
}

TEST(NewDriverWin98, GoesWithTheNineXEnvironment)
{
    ExpectNewDriverListed("Windows 4.0");
    std::string directory = DriverDirectory();
    for (char &c : directory)
        c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
    EXPECT_NE(std::string::npos, directory.find("\\win40\\")) << directory;
}

TEST(InstalledDriver, ChangedFileNamesKeepTheStoredDirectory)
{
    CPrinterInf inf;
    FillModel(inf, "Tovrel Changing Driver");
    ASSERT_EQ(1, inf.AddNewDriver(CDestinationList(1, CBoundedString("tvdrv.dll"))));
    CListedDriver before = ListedDriver("Tovrel Changing Driver");
    ASSERT_TRUE(before.Found);

    inf.DriverFile = CBoundedString("tvdrv2.dll");
    inf.HelpFile = CBoundedString("TVHELP.HLP");  // the same file in other capitals
    inf.DefaultDataType = CBoundedString("NT EMF 1.008");
    EXPECT_EQ(1, inf.UpdateInstalledDrivers());

    CListedDriver after = ListedDriver("Tovrel Changing Driver");
    ASSERT_TRUE(after.Found);
    std::string stored = before.DriverPath.substr(0, before.DriverPath.rfind('\\') + 1);
    EXPECT_STRCASEEQ((stored + "tvdrv2.dll").c_str(), after.DriverPath.c_str());
    EXPECT_EQ(before.HelpFile, after.HelpFile);
    EXPECT_EQ(before.DataFile, after.DataFile);
    EXPECT_EQ(before.ConfigFile, after.ConfigFile);
    EXPECT_EQ(before.Environment, after.Environment);
    EXPECT_EQ(before.DependentFiles, after.DependentFiles);
    EXPECT_EQ("NT EMF 1.008", after.DefaultDataType);
}

// When the spooler last wrote its record of the driver: every
// AddPrinterDriverA rewrites the values of the driver's registry key.
FILETIME DriverWriteTime(const CListedDriver &driver, const char *name)
{
    std::string key = "System\\CurrentControlSet\\Control\\Print\\Environments\\" + driver.Environment +
                      "\\Drivers\\Version-" + std::to_string(driver.Version) + "\\" + name;
    FILETIME written = {0, 0};
    HKEY handle;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) {
        ADD_FAILURE() << "no key " << key;
        return written;
    }
    RegQueryInfoKeyA(handle, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, &written);
    RegCloseKey(handle);
    return written;
}

bool SameTime(const FILETIME &left, const FILETIME &right)
{
    return left.dwLowDateTime == right.dwLowDateTime && left.dwHighDateTime == right.dwHighDateTime;
}

TEST(InstalledDriver, NothingChangedMeansNoUpdate)
{
    const char *name = "Tovrel Steady Driver";
    CPrinterInf inf;
    FillModel(inf, name);
    ASSERT_EQ(1, inf.AddNewDriver(CDestinationList(1, CBoundedString("tvdrv.dll"))));
    CListedDriver before = ListedDriver(name);
    ASSERT_TRUE(before.Found);
    FILETIME added = DriverWriteTime(before, name);

    // The same names in other capitals, as a second run of the INF gives them.
    inf.DriverFile = CBoundedString("TVDRV.DLL");
    inf.DefaultDataType = CBoundedString("raw");
    Sleep(20);
    EXPECT_EQ(1, inf.UpdateInstalledDrivers());
    EXPECT_TRUE(SameTime(added, DriverWriteTime(before, name)));
    CListedDriver after = ListedDriver(name);
    EXPECT_EQ(before.DriverPath, after.DriverPath);
    EXPECT_EQ(before.DefaultDataType, after.DefaultDataType);

    // A change is written, so the unchanged time above says something.
    inf.MonitorName = CBoundedString("Tovrel Other Monitor");
    EXPECT_EQ(1, inf.UpdateInstalledDrivers());
    EXPECT_FALSE(SameTime(added, DriverWriteTime(before, name)));
    EXPECT_EQ("Tovrel Other Monitor", ListedDriver(name).MonitorName);
}

// The model as Install reads it, before the stages run.
void OpenModel(CPrinterInf &inf, const std::string &install)
{
    std::string path = ScratchDirectory() + "stage.inf";
    WriteText(path, "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
                    "[Manufacturer]\r\nAcme=AcmeDevices\r\n[AcmeDevices]\r\nTovrel Stage Model=Inst\r\n"
                    "[Inst]\r\nDataSection=Data\r\n" + install +
                    "[Data]\r\nDriverFile=stage.dll\r\nDataFile=stage.ppd\r\nConfigFile=stageui.txt\r\n"
                    "HelpFile=stage.hlp\r\nDefaultDataType=RAW\r\n[DestinationDirs]\r\nDefaultDestDir=11\r\n");
    ASSERT_EQ(1, inf.Open(path.c_str()));
    ASSERT_EQ(1, inf.ReadDeviceSection("Acme", "Tovrel Stage Model", "Tovrel Stage Printer"));
}

TEST(InstallDriver, AModelThatCopiesNothingIsNotAdded)
{
    CPrinterInf inf;
    OpenModel(inf, "");
    EXPECT_EQ(1, inf.InstallDriver());
    EXPECT_FALSE(ListedDriver("Tovrel Stage Model").Found);
}

TEST(InstallDriver, NewDriverDependsOnTheCopyFilesNamesThenStays)
{
    CPrinterInf inf;
    OpenModel(inf, "CopyFiles=@b.dll, @A.DLL,@a.dll,Extra\r\n");
    EXPECT_EQ(1, inf.InstallDriver());
    CListedDriver listed = ListedDriver("Tovrel Stage Model");
    ASSERT_TRUE(listed.Found);
    std::string directory = DriverDirectory();
    ExpectInDriverDirectory(directory, listed.DriverPath, "stage.dll");
    ExpectInDriverDirectory(directory, listed.ConfigFile, "stageui.txt");
    std::vector<std::string> dependent = {"A.DLL", "b.dll", "Extra"};
    ASSERT_EQ(dependent.size(), listed.DependentFiles.size());
    for (size_t i = 0; i < dependent.size(); ++i)
        ExpectInDriverDirectory(directory, listed.DependentFiles[i], dependent[i]);

    // A second run finds it and, with nothing changed, leaves it alone.
    FILETIME added = DriverWriteTime(listed, "Tovrel Stage Model");
    Sleep(20);
    EXPECT_EQ(1, inf.InstallDriver());
    EXPECT_TRUE(SameTime(added, DriverWriteTime(listed, "Tovrel Stage Model")));
}

}  // namespace
