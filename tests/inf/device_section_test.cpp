#include <gtest/gtest.h>

#include <map>
#include <string>

#include "debug_output.h"
#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "inf/device_section.h"
#include "registry_support.h"
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

typedef std::map<std::string, std::string> CValues;

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

    // The model key's values as text, without the NUL that Wine stores.
    CValues Recorded(const std::string &model)
    {
        CValues values;
        for (const std::string &name : StoredValueNames(HKEY_LOCAL_MACHINE, Root + "\\" + model)) {
            CStoredValue value = ReadStoredValue(HKEY_LOCAL_MACHINE, Root + "\\" + model, name.c_str());
            EXPECT_EQ(DWORD(REG_SZ), value.Type) << name;
            std::string text = value.Data;
            if (!text.empty() && text.back() == '\0')
                text.pop_back();
            values[name] = text;
        }
        return values;
    }

    void ExpectFields(const char *const (&expected)[18])
    {
        const CBoundedString *fields[] = {
            &Printer.Manufacturer, &Printer.Model, &Printer.PrinterName, &Printer.DeviceSection,
            &Printer.InstallSection, &Printer.PnpId, &Printer.AddRegSections, &Printer.ProgramGroupSections,
            &Printer.DataSection, &Printer.DriverFile, &Printer.DataFile, &Printer.ConfigFile, &Printer.HelpFile,
            &Printer.PrintProcessorName, &Printer.PrintProcessorFile, &Printer.MonitorName, &Printer.MonitorFile,
            &Printer.DefaultDataType,
        };
        for (int i = 0; i < 18; ++i)
            EXPECT_STREQ(expected[i], fields[i]->Text) << "field " << i;
    }

    std::string Path;
    CPrinterInf Printer;
};

TEST_F(DeviceSection, TheNtVariantFillsEveryFieldAndRecordsTenValues)
{
    ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Laser 5", "My Laser"));
    ExpectFields({"Acme", "Laser 5", "My Laser", "AcmeDevices", "Inst5.NTx86", "LPTENUM\\AcmeLaser5", "RegNT", "",
                  "DataNT", "\"nt.dll\"", "nt.ppd", "ntui.dll", "nt.hlp", "AcmeProc", "acmepp.dll", "Acme Monitor",
                  "acmemon.dll", "RAW"});
    CValues want = {
        {"PnP ID", "LPTENUM\\AcmeLaser5"}, {"Driver File", "\"nt.dll\""}, {"Data File", "nt.ppd"},
        {"Config File", "ntui.dll"}, {"Help File", "nt.hlp"}, {"Print Processor Name", "AcmeProc"},
        {"Print Processor File", "acmepp.dll"}, {"Language Monitor Name", "Acme Monitor"},
        {"Language Monitor File", "acmemon.dll"}, {"Default Data Type", "RAW"},
    };
    EXPECT_EQ(want, Recorded("Laser 5"));

    // The model's folder replaces directory id 66004; its base, 66601, stays.
    char web[260] = "", model[260] = "";
    ASSERT_EQ(1, Printer.FindDirectoryId(66601, web));
    ASSERT_EQ(1, Printer.FindDirectoryId(DIRID_PRINTER_WEB, model));
    std::string base = web;
    if (base.empty() || base.back() != '\\')
        base += '\\';
    EXPECT_NE(std::string::npos, base.find(":\\")) << "a full path: " << base;
    EXPECT_EQ(base + "Acme\\Laser 5\\", std::string(model));

    // An empty text is stored with size 0 on the NT family.
    ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Plain", "P"));
    CValues plain = Recorded("Plain");
    EXPECT_EQ(10u, plain.size());
    EXPECT_EQ("PnP,More", plain["PnP ID"]);
    EXPECT_EQ(0u, ReadStoredValue(HKEY_LOCAL_MACHINE, Root + "\\Plain", "Driver File").Data.size());
}

TEST_F(DeviceSection, ChainVariants)
{
    const struct {
        const char *Manufacturer, *Model, *DeviceSection, *InstallSection, *PnpId;
    } cases[] = {
        {"ACME", "nocomma", "AcmeDevices", "Inst5.NTx86", ""},
        {"Quoted Maker", "NoComma", "AcmeDevices", "Inst5.NTx86", ""},  // a quoted key in the file
        {"Bare", "Model", "Bare", "Plain", ""},                          // no value: its own name
        {"Tokened", "NoComma", "AcmeDevices", "Inst5.NTx86", ""},        // the value a token
        {"%MakerToken%", "NoComma", "AcmeDevices", "Inst5.NTx86", ""},   // the name a token
        {"Acme", "Plain", "AcmeDevices", "Plain", "PnP,More"},           // empty variant: plain
    };
    for (const auto &c : cases) {
        CPrinterInf printer;
        ASSERT_EQ(1, printer.Open(Path.c_str()));
        std::string label = std::string(c.Manufacturer) + "/" + c.Model;
        EXPECT_EQ(1, printer.ReadDeviceSection(c.Manufacturer, c.Model, "P")) << label;
        EXPECT_STREQ(c.DeviceSection, printer.DeviceSection.Text) << label;
        EXPECT_STREQ(c.InstallSection, printer.InstallSection.Text) << label;
        EXPECT_STREQ(c.PnpId, printer.PnpId.Text) << label;
    }
}

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

TEST_F(DeviceSection, TheWin98VariantOfTheInstallSection)
{
    ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Laser 5", "My Laser"));
    ExpectFields({"Acme", "Laser 5", "My Laser", "AcmeDevices", "Inst5.Win", "LPTENUM\\AcmeLaser5", "", "Group9x",
                  "Data9x", "tok.dll", "9x.ppd", "9xui.dll", "9x.hlp", "winprint", "", "", "", ""});
    CValues values = Recorded("Laser 5");
    EXPECT_EQ(10u, values.size());
    EXPECT_EQ("tok.dll", values["Driver File"]);
    // The 9x family stores the NUL of an empty text too.
    EXPECT_EQ(std::string("\0", 1),
              ReadStoredValue(HKEY_LOCAL_MACHINE, Root + "\\Laser 5", "Default Data Type").Data);

    CPrinterInf plain;
    ASSERT_EQ(1, plain.Open(Path.c_str()));
    ASSERT_EQ(1, plain.ReadDeviceSection("Acme", "Plain", "P"));
    EXPECT_STREQ("Plain", plain.InstallSection.Text) << "an empty .Win variant counts as absent";
}

}  // namespace
