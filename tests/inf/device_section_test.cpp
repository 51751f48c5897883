#include <gtest/gtest.h>

#include <map>
#include <string>

#include "debug_output.h"
#include "entry/printer_inf.h"
#include "inf/device_section.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string Root = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\";

const char DeviceInf[] =
    "[Version]\r\n"
    "Signature=\"$Chicago$\"\r\n"
    "Class=Printer\r\n"
    "[DestinationDirs]\r\n"
    "DefaultDestDir=11\r\n"
    "[Manufacturer]\r\n"
    "Acme=AcmeDevices\r\n"
    "\"Quoted Maker\"=AcmeDevices\r\n"
    "Bare\r\n"
    "Tokened=%DeviceToken%\r\n"
    "Ghost=NoSuchSection\r\n"
    "[Strings]\r\n"
    "MakerToken=Tokened\r\n"
    "DeviceToken=AcmeDevices\r\n"
    "DriverToken=\"tok.dll\"\r\n"
    "[Bare]\r\n"
    "Model=Plain\r\n"
    "[AcmeDevices]\r\n"
    "Laser 5=Inst5,LPTENUM\\AcmeLaser5\r\n"
    "NoComma=Inst5\r\n"
    "Spaced=Inst5 , ID\r\n"
    "Quoted=\"Inst5\"\r\n"
    "Plain=Plain,PnP,More\r\n"
    "NoData=NoData\r\n"
    "EmptyData=EmptyData\r\n"
    "MissingDataSection=MissingDataSection\r\n"
    "NoHelp=NoHelp\r\n"
    "NoDriver=NoDriver\r\n"
    "[Inst5]\r\n"
    "AddReg=Reg5\r\n"
    "AddProgramGroup=Group5\r\n"
    "DataSection=Data5\r\n"
    "[Inst5.NTx86]\r\n"
    "AddReg=RegNT\r\n"
    "DataSection=DataNT\r\n"
    "[Inst5.Win]\r\n"
    "AddProgramGroup=Group9x\r\n"
    "DataSection=Data9x\r\n"
    "[Plain]\r\n"
    "DataSection=DataPlain\r\n"
    "[Plain.NTx86]\r\n"
    "[Plain.Win]\r\n"
    "[Data5]\r\n"
    "DriverFile=plain.dll\r\n"
    "DataFile=plain.ppd\r\n"
    "ConfigFile=plainui.dll\r\n"
    "HelpFile=plain.hlp\r\n"
    "[DataNT]\r\n"
    "DriverFile=\"nt.dll\"\r\n"
    "DataFile=nt.ppd\r\n"
    "ConfigFile=ntui.dll\r\n"
    "HelpFile=nt.hlp\r\n"
    "PrintProcessor=\"AcmeProc\",\"acmepp.dll\"\r\n"
    "LanguageMonitor=\"Acme Monitor,acmemon.dll\"\r\n"
    "DefaultDataType=RAW\r\n"
    "[Data9x]\r\n"
    "DriverFile=%DriverToken%\r\n"
    "DataFile=9x.ppd\r\n"
    "ConfigFile=9xui.dll\r\n"
    "HelpFile=9x.hlp\r\n"
    "PrintProcessor=winprint\r\n"
    "[DataPlain]\r\n"
    "DriverFile=\r\n"
    "DataFile=\r\n"
    "ConfigFile=\r\n"
    "HelpFile=\r\n"
    "[NoData]\r\n"
    "AddReg=R\r\n"
    "[EmptyData]\r\n"
    "DataSection=\r\n"
    "[MissingDataSection]\r\n"
    "DataSection=Nowhere\r\n"
    "[NoHelp]\r\n"
    "DataSection=NoHelpData\r\n"
    "[NoHelpData]\r\n"
    "DriverFile=d.dll\r\n"
    "DataFile=d.ppd\r\n"
    "ConfigFile=c.dll\r\n"
    "[NoDriver]\r\n"
    "DataSection=NoDriverData\r\n"
    "[NoDriverData]\r\n"
    "DataFile=d.ppd\r\n";

typedef std::map<std::string, std::string> CValues;

class DeviceSection : public ::testing::Test {
protected:
    void SetUp() override
    {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, Root.substr(0, Root.size() - 1));
        Path = ScratchDirectory() + "device.inf";
        WriteText(Path, DeviceInf);
        ASSERT_EQ(1, Printer.Open(Path.c_str()));
    }
    void TearDown() override { DeleteKeyTree(HKEY_LOCAL_MACHINE, Root.substr(0, Root.size() - 1)); }

    // The model key's values as text, without the NUL that Wine stores.
    CValues Recorded(const std::string &model)
    {
        CValues values;
        for (const std::string &name : StoredValueNames(HKEY_LOCAL_MACHINE, Root + model)) {
            CStoredValue value = ReadStoredValue(HKEY_LOCAL_MACHINE, Root + model, name.c_str());
            EXPECT_EQ(DWORD(REG_SZ), value.Type) << name;
            std::string text = value.Data;
            if (!text.empty() && text.back() == '\0')
                text.pop_back();
            EXPECT_EQ(std::string::npos, text.find('\0')) << name;
            values[name] = text;
        }
        return values;
    }

    std::string Path;
    CPrinterInf Printer;
};

void ExpectFields(const CPrinterInf &p, const char *const (&expected)[18], const char *label)
{
    const CBoundedString *fields[] = {
        &p.Manufacturer,   &p.Model,          &p.PrinterName,        &p.DeviceSection,      &p.InstallSection,
        &p.PnpId,          &p.AddRegSections, &p.ProgramGroupSections, &p.DataSection,      &p.DriverFile,
        &p.DataFile,       &p.ConfigFile,     &p.HelpFile,           &p.PrintProcessorName, &p.PrintProcessorFile,
        &p.MonitorName,    &p.MonitorFile,    &p.DefaultDataType,
    };
    for (int i = 0; i < 18; ++i)
        EXPECT_STREQ(expected[i], fields[i]->Text) << label << ", field " << i;
}

TEST_F(DeviceSection, TheNtVariantOfTheInstallSection)
{
    CDebugOutputCapture capture;
    ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Laser 5", "My Laser"));
    const char *const expected[18] = {
        "Acme", "Laser 5", "My Laser", "AcmeDevices", "Inst5.NTx86", "LPTENUM\\AcmeLaser5", "RegNT", "",
        "DataNT", "\"nt.dll\"", "nt.ppd", "ntui.dll", "nt.hlp", "AcmeProc", "acmepp.dll", "Acme Monitor",
        "acmemon.dll", "RAW",
    };
    ExpectFields(Printer, expected, "NT");
    EXPECT_EQ("", capture.Text());

    CValues values = Recorded("Laser 5");
    CValues want = {
        {"PnP ID", "LPTENUM\\AcmeLaser5"},
        {"Driver File", "\"nt.dll\""},
        {"Data File", "nt.ppd"},
        {"Config File", "ntui.dll"},
        {"Help File", "nt.hlp"},
        {"Print Processor Name", "AcmeProc"},
        {"Print Processor File", "acmepp.dll"},
        {"Language Monitor Name", "Acme Monitor"},
        {"Language Monitor File", "acmemon.dll"},
        {"Default Data Type", "RAW"},
    };
    EXPECT_EQ(want, values);
}

TEST_F(DeviceSection, TheModelFolderReplacesDirectoryId66004)
{
    char web[260] = "";
    ASSERT_EQ(1, Printer.FindDirectoryId(66601, web));  // the same folder, left alone
    ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Laser 5", "P"));
    char model[260] = "";
    ASSERT_EQ(1, Printer.FindDirectoryId(ModelWebDirectoryId, model));
    std::string base = web;
    if (base.empty() || base.back() != '\\')
        base += '\\';
    EXPECT_EQ(base + "Acme\\Laser 5\\", std::string(model));
    EXPECT_NE(std::string::npos, base.find(":\\")) << "a full path: " << base;
    char again[260] = "";
    Printer.FindDirectoryId(66601, again);
    EXPECT_STREQ(web, again);
}

TEST_F(DeviceSection, ChainVariants)
{
    const struct {
        const char *Manufacturer, *Model;
        const char *DeviceSection, *InstallSection, *PnpId;
    } cases[] = {
        {"Acme", "NoComma", "AcmeDevices", "Inst5.NTx86", ""},
        {"ACME", "nocomma", "AcmeDevices", "Inst5.NTx86", ""},
        {"Quoted Maker", "NoComma", "AcmeDevices", "Inst5.NTx86", ""},   // a quoted key in the file
        {"Bare", "Model", "Bare", "Plain", ""},                           // no value: its own name
        {"Tokened", "NoComma", "AcmeDevices", "Inst5.NTx86", ""},         // the value a token
        {"%MakerToken%", "NoComma", "AcmeDevices", "Inst5.NTx86", ""},    // the name a token
        {"Acme", "Plain", "AcmeDevices", "Plain", "PnP,More"},            // empty variant: plain
    };
    for (const auto &c : cases) {
        CPrinterInf printer;
        ASSERT_EQ(1, printer.Open(Path.c_str()));
        EXPECT_EQ(1, printer.ReadDeviceSection(c.Manufacturer, c.Model, "P")) << c.Manufacturer << "/" << c.Model;
        EXPECT_STREQ(c.DeviceSection, printer.DeviceSection.Text) << c.Manufacturer << "/" << c.Model;
        EXPECT_STREQ(c.InstallSection, printer.InstallSection.Text) << c.Manufacturer << "/" << c.Model;
        EXPECT_STREQ(c.PnpId, printer.PnpId.Text) << c.Manufacturer << "/" << c.Model;
        EXPECT_STREQ(c.Manufacturer, printer.Manufacturer.Text);
    }
}

TEST_F(DeviceSection, EmptyFileValuesAreFoundAndRecordedEmpty)
{
    ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Plain", "P"));
    EXPECT_TRUE(Printer.DriverFile.IsEmpty());
    CValues values = Recorded("Plain");
    EXPECT_EQ(10u, values.size());
    for (const auto &value : values)
        if (value.first != "PnP ID") {
            EXPECT_EQ("", value.second) << value.first;
        }
    // An empty text is stored with size 0 on the NT family.
    EXPECT_EQ(0u, ReadStoredValue(HKEY_LOCAL_MACHINE, Root + "Plain", "Driver File").Data.size());
}

TEST_F(DeviceSection, FailuresKeepWhatWasRecordedBeforeThem)
{
    const struct {
        const char *Manufacturer, *Model, *Printer;
        const char *Recorded[5];  // the model key's value names afterwards
    } cases[] = {
        {nullptr, "Laser 5", "P", {}},
        {"Acme", "", "P", {}},
        {"Acme", "Laser 5", "", {}},
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
        DeleteKeyTree(HKEY_LOCAL_MACHINE, Root.substr(0, Root.size() - 1));
        CPrinterInf printer;
        ASSERT_EQ(1, printer.Open(Path.c_str()));
        CDebugOutputCapture capture;
        std::string label = std::string(c.Manufacturer ? c.Manufacturer : "(null)") + "/" + c.Model;
        EXPECT_EQ(0, printer.ReadDeviceSection(c.Manufacturer, c.Model, c.Printer)) << label;
        EXPECT_EQ("", capture.Text()) << label;
        std::vector<std::string> want;
        for (const char *name : c.Recorded)
            if (name)
                want.push_back(name);
        std::string model = *c.Model ? c.Model : "none";
        EXPECT_EQ(want, StoredValueNames(HKEY_LOCAL_MACHINE, Root + model)) << label;
        if (want.empty() && *c.Model) {
            EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Root + model)) << label;
        }
    }
}

TEST_F(DeviceSection, FieldsFilledBeforeAFailureStay)
{
    EXPECT_EQ(0, Printer.ReadDeviceSection("Acme", "NoHelp", "P"));
    EXPECT_STREQ("NoHelp", Printer.InstallSection.Text);
    EXPECT_STREQ("NoHelpData", Printer.DataSection.Text);
    EXPECT_STREQ("c.dll", Printer.ConfigFile.Text);
    EXPECT_TRUE(Printer.HelpFile.IsEmpty());

    CPrinterInf unchanged;
    EXPECT_EQ(0, unchanged.ReadDeviceSection("Acme", "Laser 5", ""));
    EXPECT_TRUE(unchanged.Manufacturer.IsEmpty()) << "bad params come before any field";
}

TEST_F(DeviceSection, NamesOfAnyLength)
{
    std::string longName(1000, 'x');
    EXPECT_EQ(0, Printer.ReadDeviceSection(longName.c_str(), "Laser 5", "P"));
    EXPECT_EQ(259u, Printer.Manufacturer.Length());
    EXPECT_EQ(0, Printer.ReadDeviceSection("Acme", longName.c_str(), longName.c_str()));
    EXPECT_EQ(259u, Printer.PrinterName.Length());
}

TEST_F(DeviceSection, TheWin98VariantOfTheInstallSection)
{
    ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Laser 5", "My Laser"));
    const char *const expected[18] = {
        "Acme", "Laser 5", "My Laser", "AcmeDevices", "Inst5.Win", "LPTENUM\\AcmeLaser5", "", "Group9x",
        "Data9x", "tok.dll", "9x.ppd", "9xui.dll", "9x.hlp", "winprint", "", "", "", "",
    };
    ExpectFields(Printer, expected, "Win98");
    CValues values = Recorded("Laser 5");
    EXPECT_EQ(10u, values.size());
    EXPECT_EQ("tok.dll", values["Driver File"]);
    EXPECT_EQ("winprint", values["Print Processor Name"]);
    // The 9x family stores the NUL of an empty text too.
    EXPECT_EQ(std::string("\0", 1), ReadStoredValue(HKEY_LOCAL_MACHINE, Root + "Laser 5", "Default Data Type").Data);

    CPrinterInf plain;
    ASSERT_EQ(1, plain.Open(Path.c_str()));
    ASSERT_EQ(1, plain.ReadDeviceSection("Acme", "Plain", "P"));
    EXPECT_STREQ("Plain", plain.InstallSection.Text) << "an empty .Win variant counts as absent";
}

}  // namespace
