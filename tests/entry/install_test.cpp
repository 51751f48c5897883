#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
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

}  // namespace
