#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "inf/device_section.h"
#include "test_support.h"

namespace {

const std::string Root = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data";

const char DeviceInf[] =
    "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n[DestinationDirs]\r\nDefaultDestDir=11\r\n"
    "[Manufacturer]\r\nAcme=AcmeDevices\r\n\"Quoted Maker\"=AcmeDevices\r\nBare\r\nTokened=%DeviceToken%\r\n"
    "Ghost=NoSuchSection\r\n"
    "[Strings]\r\nMakerToken=Tokened\r\nDeviceToken=AcmeDevices\r\nDriverToken=\"tok.dll\"\r\n"
    "[Bare]\r\nModel=Plain\r\n"
    "[AcmeDevices]\r\nLaser 5=Inst5,LPTENUM\\AcmeLaser5\r\nNoComma=Inst5\r\nSpaced=Inst5 , ID\r\n"
    "Quoted=\"Inst5\"\r\nPlain=Plain,PnP,More\r\nNoData=NoData\r\nEmptyData=EmptyData\r\n"
    "MissingDataSection=MissingDataSection\r\nNoHelp=NoHelp\r\nNoDriver=NoDriver\r\n"
    "[Inst5]\r\nAddReg=Reg5\r\nDataSection=Data5\r\n"
    "[Inst5.NTx86]\r\nAddReg=RegNT\r\nDataSection=DataNT\r\n"
    "[Inst5.Win]\r\nAddProgramGroup=Group9x\r\nDataSection=Data9x\r\n"
    "[Plain]\r\nDataSection=DataPlain\r\n[Plain.NTx86]\r\n[Plain.Win]\r\n"
    "[DataNT]\r\nDriverFile=\"nt.dll\"\r\nDataFile=nt.ppd\r\nConfigFile=ntui.dll\r\nHelpFile=nt.hlp\r\n"
    "PrintProcessor=\"AcmeProc\",\"acmepp.dll\"\r\nLanguageMonitor=\"Acme Monitor,acmemon.dll\"\r\n"
    "DefaultDataType=RAW\r\n"
    "[Data9x]\r\nDriverFile=%DriverToken%\r\nDataFile=9x.ppd\r\nConfigFile=9xui.dll\r\nHelpFile=9x.hlp\r\n"
    "PrintProcessor=winprint\r\n"
    "[DataPlain]\r\nDriverFile=\r\nDataFile=\r\nConfigFile=\r\nHelpFile=\r\n"
    "[NoData]\r\nAddReg=R\r\n[EmptyData]\r\nDataSection=\r\n[MissingDataSection]\r\nDataSection=Nowhere\r\n"
    "[NoHelp]\r\nDataSection=NoHelpData\r\n[NoHelpData]\r\nDriverFile=d.dll\r\nDataFile=d.ppd\r\nConfigFile=c.dll\r\n"
    "[NoDriver]\r\nDataSection=NoDriverData\r\n[NoDriverData]\r\nDataFile=d.ppd\r\n";

class DeviceSection : public ::testing::Test {
protected:
    void SetUp() override
    {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, Root);
        Path = ScratchDirectory() + "device.inf";
        WriteText(Path, DeviceInf);
        ASSERT_EQ(1, Printer.Open(Path.c_str()));
    }
    void TearDown() override { DeleteKeyTree(HKEY_LOCAL_MACHINE, Root); }

    std::string Path;
    CPrinterInf Printer;
};

// Also on win98, where the ".Win" variant stands for ".NTx86".
void ExpectChainVariants(const std::string &path, const char *variant)
{
    const std::string inst5 = std::string("Inst5") + variant;
    const struct {
        const char *Manufacturer, *Model, *DeviceSection;
        std::string InstallSection;
        const char *PnpId;
    } cases[] = {
        {"Acme", "Laser 5", "AcmeDevices", inst5, "LPTENUM\\AcmeLaser5"},
        {"ACME", "nocomma", "AcmeDevices", inst5, ""},
        {"Quoted Maker", "NoComma", "AcmeDevices", inst5, ""},  // a quoted key in the file
        {"Bare", "Model", "Bare", "Plain", ""},                          // no value: its own name
        {"Tokened", "NoComma", "AcmeDevices", inst5, ""},        // the value a token
        {"%MakerToken%", "NoComma", "AcmeDevices", inst5, ""},   // the name a token
        {"Acme", "Plain", "AcmeDevices", "Plain", "PnP,More"},           // empty variant: plain
    };
    for (const auto &c : cases) {
        CPrinterInf printer;
        ASSERT_EQ(1, printer.Open(path.c_str()));
        std::string label = std::string(c.Manufacturer) + "/" + c.Model;
        EXPECT_EQ(1, printer.ReadDeviceSection(c.Manufacturer, c.Model, "P")) << label;
        EXPECT_STREQ(c.DeviceSection, printer.DeviceSection.Text) << label;
        EXPECT_EQ(c.InstallSection, printer.InstallSection.Text) << label;
        EXPECT_STREQ(c.PnpId, printer.PnpId.Text) << label;
    }
}

TEST_F(DeviceSection, ChainVariants) { ExpectChainVariants(Path, ".NTx86"); }
TEST_F(DeviceSection, ChainVariantsWin98) { ExpectChainVariants(Path, ".Win"); }

TEST_F(DeviceSection, FailuresKeepWhatWasRecordedBeforeThem)
{
    const struct {
        const char *Manufacturer, *Model, *Printer;
        std::vector<std::string> Recorded;  // the model key's value names afterwards
    } cases[] = {
        {nullptr, "Laser 5", "P", {}},
        {"Acme", "", "P", {}},
        {"Acme", "Laser 5", nullptr, {}},
        {"Nobody", "Laser 5", "P", {}},
        {"Acme", "Unknown", "P", {}},
        {"Ghost", "Laser 5", "P", {}},
        {"Acme", "Spaced", "P", {"PnP ID"}},  // "Inst5 " is no section
        {"Acme", "Quoted", "P", {"PnP ID"}},
        {"Acme", "NoData", "P", {"PnP ID"}},
        {"Acme", "EmptyData", "P", {"PnP ID"}},
        {"Acme", "MissingDataSection", "P", {"PnP ID"}},
        {"Acme", "NoDriver", "P", {"PnP ID"}},
        {"Acme", "NoHelp", "P", {"Config File", "Data File", "Driver File", "PnP ID"}},
    };
    for (const auto &c : cases) {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, Root);
        CPrinterInf printer;
        ASSERT_EQ(1, printer.Open(Path.c_str()));
        std::string label = std::string(c.Manufacturer ? c.Manufacturer : "(null)") + "/" + c.Model;
        EXPECT_EQ(0, printer.ReadDeviceSection(c.Manufacturer, c.Model, c.Printer)) << label;
        std::string model = *c.Model ? c.Model : "none";
        EXPECT_EQ(c.Recorded, StoredValueNames(HKEY_LOCAL_MACHINE, Root + "\\" + model)) << label;
        EXPECT_EQ(!c.Recorded.empty(), KeyExists(HKEY_LOCAL_MACHINE, Root)) << label;
    }
    std::string longName(1000, 'x');
    EXPECT_EQ(0, Printer.ReadDeviceSection(longName.c_str(), "Laser 5", "P"));
    EXPECT_EQ(259u, Printer.Manufacturer.Length());
}

}  // namespace
