#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/driver_registration.h"
#include "registration/spooler.h"
#include "test_support.h"

namespace {

std::string Text(const char *text) { return text ? text : ""; }

// What the spooler lists for one driver of this machine's own environment.
struct CListedDriver {
    bool Found = false;
    DWORD Version = 0;
    std::string Environment, DriverPath, DataFile, ConfigFile, HelpFile, MonitorName, DefaultDataType;
    std::vector<std::string> DependentFiles;
};

CListedDriver ListedDriver(const char *name)
{
    CListedDriver listed;
    std::vector<BYTE> buffer;
    DWORD count = 0;
    DRIVER_INFO_3A *drivers = EnumDriverInfo3(buffer, &count);
    for (DWORD i = 0; drivers && i < count; ++i) {
        const DRIVER_INFO_3A &d = drivers[i];
        if (lstrcmpiA(d.pName, name))
            continue;
        listed = {true, d.cVersion, Text(d.pEnvironment), Text(d.pDriverPath), Text(d.pDataFile),
                  Text(d.pConfigFile), Text(d.pHelpFile), Text(d.pMonitorName), Text(d.pDefaultDataType), {}};
        for (const char *file = d.pDependentFiles; file && *file; file += std::strlen(file) + 1)
            listed.DependentFiles.push_back(file);
    }
    return listed;
}

// The spooler files a driver below its directory, in the subdirectory of its
// version ("3" for Wine's NT environments), and gives the paths from there.
void ExpectInDriverDirectory(const std::string &path, const std::string &name)
{
    char directory[MAX_PATH];
    ASSERT_EQ(1, PrinterDriverDirectory(NULL, directory));
    std::string between = path.substr(0, path.size() - name.size());
    EXPECT_TRUE(!lstrcmpiA(between.c_str(), (std::string(directory) + "\\").c_str()) ||
                !lstrcmpiA(between.c_str(), (std::string(directory) + "\\3\\").c_str()) ||
                !lstrcmpiA(between.c_str(), (std::string(directory) + "\\0\\").c_str()))
        << path;
    EXPECT_EQ(name, path.substr(path.size() - name.size())) << path;
}

TEST(NewDriverRecord, VersionAndEnvironmentFollowTheSystem)
{
    const char *nt = sizeof(void *) == 8 ? "Windows x64" : "Windows NT x86";
    const struct {
        int Family, Release;
        DWORD Version;
        const char *Environment;
    } cases[] = {
        {COsVersion::FamilyWindowsNt, 6, 3, nt},        {COsVersion::FamilyWindowsNt, 5, 2, nt},
        {COsVersion::FamilyWindowsNt, 0, 2, nt},        {COsVersion::FamilyWindows9x, 3, 2, "Windows 4.0"},
        {COsVersion::FamilyWin32s, 1, 2, nullptr},      {COsVersion::FamilyUnknown, 0, 2, nullptr},
    };
    for (const auto &c : cases) {
        COsVersion os;
        os.Family = c.Family;
        os.Release = c.Release;
        EXPECT_EQ(c.Version, NewDriverVersion(os)) << c.Family << "/" << c.Release;
        EXPECT_STREQ(c.Environment, NewDriverEnvironment(os)) << c.Family << "/" << c.Release;
    }
}

TEST(DriverFileField, AStoredDirectoryStaysAndOnlyTheNameFollows)
{
    const struct {
        const char *Stored, *File, *Expected;  // Expected null: unchanged
    } cases[] = {
        {"drv.dll", "DRV.DLL", nullptr},
        {"old.dll", "new.dll", "new.dll"},
        {nullptr, "new.dll", "new.dll"},
        {nullptr, "", nullptr},
        {"C:\\Stored\\Dir\\drv.dll", "DRV.dll", nullptr},
        {"C:\\Stored\\Dir\\drv.dll", "new.dll", "C:\\Stored\\Dir\\new.dll"},
        {"\\\\server\\share\\old.dll", "new.dll", "new.dll"},
        {"C:\\Stored\\old.dll", "", "C:\\Stored\\"},
    };
    for (const auto &c : cases) {
        CFileSpec spec;
        const char *updated = UpdatedDriverFile(c.Stored, c.File, spec);
        EXPECT_STRCASEEQ(c.Expected, updated) << Text(c.Stored) << " / " << c.File;
    }
}

bool MonitorListed(const char *name, const char *file)
{
    DWORD needed = 0, count = 0;
    EnumMonitorsA(NULL, 2, NULL, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 4);
    EXPECT_TRUE(EnumMonitorsA(NULL, 2, buffer.data(), needed, &needed, &count));
    MONITOR_INFO_2A *monitors = reinterpret_cast<MONITOR_INFO_2A *>(buffer.data());
    for (DWORD i = 0; i < count; ++i)
        if (!lstrcmpiA(monitors[i].pName, name))
            return !lstrcmpiA(monitors[i].pDLLName, file);
    return false;
}

TEST(PrintProcessorAndMonitor, MonitorAddedOnceFoundTheSecondTimeAndProcessorAdded)
{
    char system[MAX_PATH];
    GetSystemDirectoryA(system, MAX_PATH);
    ASSERT_TRUE(CopyFileA((BinaryDirectory() + "tovrel_monitor.dll").c_str(),
                          (std::string(system) + "\\tovrel_monitor.dll").c_str(), FALSE));
    const DWORD errors[] = {0, ERROR_PRINT_MONITOR_ALREADY_INSTALLED};
    for (DWORD error : errors) {
        CPrinterInf inf;
        inf.MonitorName = CBoundedString("Tovrel Test Monitor");
        inf.MonitorFile = CBoundedString("tovrel_monitor.dll");
        SetLastError(0);
        EXPECT_EQ(1, inf.InstallMonitor()) << error;
        if (error) {
            EXPECT_EQ(error, GetLastError()) << "the second time";
        }
        EXPECT_TRUE(MonitorListed("Tovrel Test Monitor", "tovrel_monitor.dll")) << error;
    }
    CPrinterInf inf;
    // The spooler takes the bare file name of a processor it has.
    inf.PrintProcessorName = CBoundedString("winprint");
    inf.PrintProcessorFile = CBoundedString("localspl.dll");
    EXPECT_EQ(1, inf.InstallPrintProcessor());
}

// A model whose config file is no library: the spooler loads the config file
// when a printer is added, and a library without the printer interface would
// bring the process down.
void OpenModel(CPrinterInf &inf, const std::string &model, const std::string &copyFiles)
{
    std::string path = ScratchDirectory() + "stage.inf";
    WriteText(path, "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n[Manufacturer]\r\nAcme=AcmeDevices\r\n"
                    "[AcmeDevices]\r\n" + model + "=Inst\r\n[Inst]\r\nDataSection=Data\r\n" + copyFiles +
                    "[Data]\r\nDriverFile=tvdrv.dll\r\nDataFile=tvdata.ppd\r\nConfigFile=tvui.txt\r\n"
                    "HelpFile=tvhelp.hlp\r\nDefaultDataType=RAW\r\n[DestinationDirs]\r\nDefaultDestDir=11\r\n");
    ASSERT_EQ(1, inf.Open(path.c_str()));
    ASSERT_EQ(1, inf.ReadDeviceSection("Acme", model.c_str(), (model + " Printer").c_str()));
}

CListedDriver ExpectNewDriverListed(const char *environment)
{
    CPrinterInf none, inf;
    OpenModel(none, "Tovrel Copies Nothing", "");
    EXPECT_EQ(1, none.InstallDriver());
    EXPECT_FALSE(ListedDriver("Tovrel Copies Nothing").Found) << "a model that copies nothing is not added";

    OpenModel(inf, "Tovrel New Driver", "CopyFiles=@b.dll, @A.DLL,@a.dll,Extra\r\n");
    EXPECT_EQ(0, inf.UpdateInstalledDrivers());
    EXPECT_EQ(1, inf.InstallDriver()) << GetLastError();
    CListedDriver listed = ListedDriver("Tovrel New Driver");
    EXPECT_TRUE(listed.Found);
    EXPECT_EQ(environment, listed.Environment);
    const std::pair<std::string, std::string> files[] = {{listed.DriverPath, "tvdrv.dll"},
                                                         {listed.DataFile, "tvdata.ppd"},
                                                         {listed.ConfigFile, "tvui.txt"},
                                                         {listed.HelpFile, "tvhelp.hlp"}};
    for (const auto &file : files)
        ExpectInDriverDirectory(file.first, file.second);
    EXPECT_EQ("RAW", listed.DefaultDataType);
    // The CopyFiles names once each, as the first spelling gave them.
    const std::vector<std::string> dependent = {"A.DLL", "b.dll", "Extra"};
    EXPECT_EQ(dependent.size(), listed.DependentFiles.size());
    for (size_t i = 0; i < dependent.size() && i < listed.DependentFiles.size(); ++i)
        ExpectInDriverDirectory(listed.DependentFiles[i], dependent[i]);
    EXPECT_EQ(1, inf.UpdateInstalledDrivers()) << "the spooler knows it now";
    return listed;
}

TEST(NewDriver, ListedWithTheMachinesEnvironmentAndDriverDirectory)
{
    // Wine records every driver of an NT environment as version 3.
    EXPECT_EQ(3u, ExpectNewDriverListed(sizeof(void *) == 8 ? "Windows x64" : "Windows NT x86").Version);
}

TEST(NewDriverWin98, GoesWithTheNineXEnvironment)
{
    char directory[MAX_PATH];
    ASSERT_EQ(1, PrinterDriverDirectory(NULL, directory));
    CharLowerA(directory);
    EXPECT_NE(nullptr, std::strstr(directory, "\\win40")) << directory;
    ExpectNewDriverListed("Windows 4.0");
}

// When the spooler last wrote its record of the driver: every
// AddPrinterDriverA rewrites the values of the driver's registry key.
ULONGLONG DriverWriteTime(const CListedDriver &driver, const char *name)
{
    std::string key = "System\\CurrentControlSet\\Control\\Print\\Environments\\" + driver.Environment +
                      "\\Drivers\\Version-" + std::to_string(driver.Version) + "\\" + name;
    ULARGE_INTEGER written = {};
    HKEY handle;
    EXPECT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, &handle)) << key;
    RegQueryInfoKeyA(handle, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
                     reinterpret_cast<FILETIME *>(&written));
    RegCloseKey(handle);
    return written.QuadPart;
}

TEST(InstalledDriver, AnUpdateKeepsTheStoredDirectoryAndNothingChangedWritesNothing)
{
    const char name[] = "Tovrel Changing Driver";
    CPrinterInf inf;
    OpenModel(inf, name, "CopyFiles=tvdrv.dll\r\n");
    ASSERT_EQ(1, inf.InstallDriver());
    CListedDriver before = ListedDriver(name);
    ULONGLONG added = DriverWriteTime(before, name);
    // The same names in other capitals, as a second run of the INF gives them.
    inf.DriverFile = CBoundedString("TVDRV.DLL");
    inf.DefaultDataType = CBoundedString("raw");
    Sleep(20);
    EXPECT_EQ(1, inf.UpdateInstalledDrivers());
    EXPECT_EQ(added, DriverWriteTime(before, name)) << "no update";

    inf.DriverFile = CBoundedString("tvdrv2.dll");
    inf.HelpFile = CBoundedString("TVHELP.HLP");  // the same file in other capitals
    inf.DefaultDataType = CBoundedString("NT EMF 1.008");
    inf.MonitorName = CBoundedString("Tovrel Other Monitor");
    EXPECT_EQ(1, inf.UpdateInstalledDrivers());
    EXPECT_NE(added, DriverWriteTime(before, name));
    CListedDriver after = ListedDriver(name);
    std::string stored = before.DriverPath.substr(0, before.DriverPath.rfind('\\') + 1);
    EXPECT_STRCASEEQ((stored + "tvdrv2.dll").c_str(), after.DriverPath.c_str());
    EXPECT_EQ(before.HelpFile, after.HelpFile);
    EXPECT_EQ(before.DataFile, after.DataFile);
    EXPECT_EQ(before.DependentFiles, after.DependentFiles);
    EXPECT_EQ("NT EMF 1.008", after.DefaultDataType);
    EXPECT_EQ("Tovrel Other Monitor", after.MonitorName);
}

}  // namespace
