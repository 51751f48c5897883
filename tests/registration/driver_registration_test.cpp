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

// A driver the spooler does not know is added; one it knows is updated with
// its stored directory kept, and not written at all when nothing changed.
TEST(InstalledDriver, AddedOnceThenUpdatedInPlaceOrLeftAlone)
{
    const char name[] = "Tovrel Changing Driver";
    CPrinterInf inf;
    OpenModel(inf, name, "CopyFiles=tvdrv.dll\r\n");
    EXPECT_EQ(0, inf.UpdateInstalledDrivers()) << "an unknown driver is not updated";
    ASSERT_EQ(1, inf.InstallDriver()) << "but added";
    CListedDriver before = ListedDriver(name);
    ASSERT_TRUE(before.Found);
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
