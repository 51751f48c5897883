#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string UninstallData = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data";

std::string PrinterInf(const char *signature, const char *dataSection)
{
    return std::string("[Version]\r\nClass=Printer\r\nSignature=") + signature +
           "\r\n[DestinationDirs]\r\nDefaultDestDir=11\r\n"
           "[Manufacturer]\r\nMaker=Devices\r\n[Devices]\r\nModel=Inst,ID\r\n[Inst]\r\nDataSection=" + dataSection +
           "\r\n[Data]\r\nDriverFile=d.dll\r\nDataFile=d.ppd\r\nConfigFile=c.dll\r\nHelpFile=h.hlp\r\n";
}

// Install gives 1 and writes the reboot flag only when every stage was
// reached; a run that stops leaves the flag as the caller set it, and only
// the device values recorded before the stop.
TEST(InstallSpine, TheFlagIsWrittenOnlyWhenEveryStageWasReached)
{
    const struct {
        const char *Signature, *DataSection, *Printer;
        int Result, Reboot;
        size_t Recorded;
    } cases[] = {
        {"$Chicago$", "Data", "Printer", 1, 0, 10},
        {"$Windows 95$", "Data", "Printer", 0, 5, 0},  // refused by Open
        {"$Chicago$", "Data", "", 0, 5, 0},
        {"$Chicago$", "Missing", "Printer", 0, 5, 1},  // "PnP ID" only
        {nullptr, nullptr, "Printer", 0, 5, 0},        // no file at all
    };
    std::string path = ScratchDirectory() + "printer.inf";
    for (const auto &c : cases) {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallData);
        DeleteFileA(path.c_str());
        if (c.Signature)
            WriteText(path, PrinterInf(c.Signature, c.DataSection));
        CPrinterInf printer;
        int reboot = 5;
        std::string label = std::string(c.Signature ? c.Signature : "(no file)") + "/" + c.Printer;
        EXPECT_EQ(c.Result, printer.Install(path.c_str(), "Maker", "Model", c.Printer, &reboot, "")) << label;
        EXPECT_EQ(c.Reboot, reboot) << label;
        EXPECT_EQ(c.Recorded, StoredValueNames(HKEY_LOCAL_MACHINE, UninstallData + "\\Model").size()) << label;
        EXPECT_EQ(c.Recorded != 0, KeyExists(HKEY_LOCAL_MACHINE, UninstallData)) << label;
        EXPECT_STREQ(c.Result ? "d.dll" : "", printer.DriverFile.Text) << label;
    }
    DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallData);
}

}  // namespace
