#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

class InstallSpine : public ::testing::Test {
protected:
    void SetUp() override { Dir = ScratchDirectory(); }
    std::string Dir;
};

TEST_F(InstallSpine, StartsWithEmptyFieldsAndNoReboot)
{
    CPrinterInf printer;
    EXPECT_FALSE(printer.RebootRequired);
    EXPECT_EQ(0, printer.IsRebootRequired());
    EXPECT_TRUE(printer.DriverFile.IsEmpty());
    EXPECT_TRUE(printer.ProgramGroupSections.IsEmpty());
    EXPECT_TRUE(printer.DirectoryIds.empty());
    EXPECT_TRUE(printer.DestinationDirs.empty());
    EXPECT_TRUE(printer.Sections.empty());
}

TEST_F(InstallSpine, AMissingFileStopsTheRunAndLeavesTheFlag)
{
    CPrinterInf printer;
    int reboot = 5;
    std::string missing = Dir + "missing.inf";
    EXPECT_EQ(0, printer.Install(missing.c_str(), "Maker", "Model", "Printer", &reboot, ""));
    EXPECT_EQ(5, reboot);
    EXPECT_TRUE(printer.Sections.empty());
}

TEST_F(InstallSpine, OpenLoadsTheStoreOnce)
{
    std::string path = Dir + "printer.inf";
    WriteText(path, "[Version]\r\nClass=Printer\r\n");
    CPrinterInf printer;
    EXPECT_EQ(0, printer.Open(path.c_str())) << "no signature";
    EXPECT_EQ(1, printer.GetKeyCount("Version"));
    // The second Open of a run can only work on a store that stayed empty.
    WriteText(path, "[Version]\r\nClass=Printer\r\nSignature=$Chicago$\r\n[Manufacturer]\r\nM=M\r\n");
    EXPECT_EQ(0, printer.Open(path.c_str()));
    EXPECT_EQ(1, printer.GetKeyCount("Version"));
}

TEST_F(InstallSpine, TheRebootFlagComesBackAsZeroOrOne)
{
    CPrinterInf printer;
    printer.RebootRequired = true;
    EXPECT_EQ(1, printer.IsRebootRequired());
}

const char UninstallData[] = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data";

std::string PrinterInf(const char *signature, const char *dataSection)
{
    return std::string("[Version]\r\nClass=Printer\r\nSignature=") + signature +
           "\r\n[DestinationDirs]\r\nDefaultDestDir=11\r\n"
           "[Manufacturer]\r\nMaker=Devices\r\n[Devices]\r\nModel=Inst,ID\r\n[Inst]\r\nDataSection=" + dataSection +
           "\r\n[Data]\r\nDriverFile=d.dll\r\nDataFile=d.ppd\r\nConfigFile=c.dll\r\nHelpFile=h.hlp\r\n";
}

TEST_F(InstallSpine, ReadsTheDeviceSectionAfterOpen)
{
    DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallData);
    std::string path = Dir + "printer.inf";
    WriteText(path, PrinterInf("$Chicago$", "Data"));
    CPrinterInf printer;
    int reboot = 5;
    EXPECT_EQ(1, printer.Install(path.c_str(), "Maker", "Model", "Printer", &reboot, ""));
    EXPECT_EQ(0, reboot);
    EXPECT_STREQ("d.dll", printer.DriverFile.Text);
    EXPECT_EQ(10u, StoredValueNames(HKEY_LOCAL_MACHINE, std::string(UninstallData) + "\\Model").size());
    DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallData);
}

TEST_F(InstallSpine, StopsBeforeAnyStageWithOnlyTheDeviceValuesRecorded)
{
    const struct {
        const char *Label, *Signature, *DataSection, *Printer;
        size_t Recorded;
    } cases[] = {
        {"wrong family", "$Windows 95$", "Data", "Printer", 0},
        {"no printer name", "$Chicago$", "Data", "", 0},
        {"no data section", "$Chicago$", "Missing", "Printer", 1},  // "PnP ID" only
    };
    for (const auto &c : cases) {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallData);
        std::string path = Dir + "printer.inf";
        WriteText(path, PrinterInf(c.Signature, c.DataSection));
        CPrinterInf printer;
        int reboot = 5;
        EXPECT_EQ(0, printer.Install(path.c_str(), "Maker", "Model", c.Printer, &reboot, "")) << c.Label;
        EXPECT_EQ(5, reboot) << c.Label;
        EXPECT_EQ(c.Recorded, StoredValueNames(HKEY_LOCAL_MACHINE, std::string(UninstallData) + "\\Model").size())
            << c.Label;
        if (!c.Recorded) {
            EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, UninstallData)) << c.Label;
        }
    }
    DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallData);
}

}  // namespace
