#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "inf/inf_discovery.h"
#include "registration/spooler.h"
#include "registry_support.h"
#include "support/handles.h"
#include "test_support.h"

namespace {

std::string PrinterInf(const std::string &version, const std::string &rest)
{
    return "[Version]\r\nSignature=\"$Windows NT$\"\r\n" + version + rest;
}

const char ClassPrinter[] = "Class=Printer\r\n";
const char Models[] =
    "[Manufacturer]\r\nAcme=AcmeModels\r\n[AcmeModels]\r\n\"Laser 5\" = Inst5,LPTENUM\\AcmeLaser5\r\n";

std::string LongSection(const char *name, int lines)
{
    std::string text = std::string("[") + name + "]\r\n";
    for (int i = 0; i < lines; ++i)
        text += "Filler Model Number " + std::to_string(i) + "=Inst\r\n";
    return text;
}

TEST(MatchInf, ClassModelAndManufacturer)
{
    static const struct {
        const char *Label;
        std::string Text;
        const char *Model;
        int Expected;
        const char *Manufacturer;
    } cases[] = {
        {"guid", PrinterInf("ClassGUID={4d36e979-e325-11ce-bfc1-08002be10318}\r\n", Models), "Laser 5", 1, "Acme"},
        {"other guid", PrinterInf("ClassGUID={4D36E96B-E325-11CE-BFC1-08002BE10318}\r\nClass=Printer\r\n", Models),
         "Laser 5", 0, nullptr},
        {"class capitals", PrinterInf("Class=pRINTER\r\n", Models), "laser 5", 1, "Acme"},
        {"other class", PrinterInf("Class=Keyboard\r\n", Models), "Laser 5", 0, nullptr},
        {"no class", PrinterInf("", Models), "Laser 5", 0, nullptr},
        {"other model", PrinterInf(ClassPrinter, Models), "Laser 6", 0, nullptr},
        {"line without =", PrinterInf(ClassPrinter, "[Manufacturer]\r\nBare\r\n[Bare]\r\nPlain=Inst\r\n"), "Plain",
         1, "Bare"},
        {"second maker", PrinterInf(ClassPrinter, "[Manufacturer]\r\nA=Empty\r\n\"B Corp\"=BModels\r\n"
                                                  "[BModels]\r\nB1=Inst\r\n"), "B1", 1, "B Corp"},
        {"tokens", PrinterInf(ClassPrinter, "[Manufacturer]\r\n%Maker%=TokModels\r\n[TokModels]\r\n"
                                            "%Model%=Inst\r\n[Strings]\r\nMaker=\"Acme Corp\"\r\n"
                                            "Model=\"Laser Tok\"\r\n"), "Laser Tok", 1, "Acme Corp"},
        {"beyond 260 bytes", PrinterInf(ClassPrinter, "[Manufacturer]\r\nAcme=Long\r\n" + LongSection("Long", 12) +
                                                          "Late=Inst\r\n"), "Late", 0, nullptr},
        {"within 260 bytes", PrinterInf(ClassPrinter, "[Manufacturer]\r\nAcme=Long\r\n" + LongSection("Long", 12) +
                                                          "Late=Inst\r\n"), "Filler Model Number 1", 1, "Acme"},
    };
    std::string directory = ScratchDirectory();
    CPrinterInf inf;
    for (const auto &c : cases) {
        std::string path = directory + "match.inf";
        WriteText(path, c.Text);
        CBoundedString manufacturer("Given");
        EXPECT_EQ(c.Expected, inf.MatchInf(CBoundedString(path.c_str()), CBoundedString(c.Model), manufacturer))
            << c.Label;
        if (c.Manufacturer) {
            EXPECT_STREQ(c.Manufacturer, manufacturer.Text) << c.Label;
        }
        // The profile calls cache a file; a new name for each case is safer
        // than trusting the time stamp.
        DeleteFileA(path.c_str());
        WritePrivateProfileStringA(NULL, NULL, NULL, path.c_str());
    }
}

// A driver and a printer on it. The spooler copies the driver's files from
// the directory of its driver path into its own and records them there.
void AddPrinterWithInstallInf(const char *printer, const char *model, const std::string &dataFile)
{
    std::string driverPath = dataFile.substr(0, dataFile.rfind('\\') + 1) + "tvdrv.dll";
    WriteText(driverPath, "not a library");
    char configFile[] = "tvui.txt";
    DRIVER_INFO_3A driver;
    std::memset(&driver, 0, sizeof driver);
    driver.cVersion = 3;
    driver.pName = const_cast<char *>(model);
    driver.pDriverPath = const_cast<char *>(driverPath.c_str());
    driver.pDataFile = const_cast<char *>(dataFile.c_str());
    driver.pConfigFile = configFile;
    ASSERT_TRUE(AddPrinterDriverA(NULL, 3, reinterpret_cast<BYTE *>(&driver))) << GetLastError();
    char port[] = "FILE:", processor[] = "winprint", datatype[] = "RAW";
    PRINTER_INFO_2A info;
    std::memset(&info, 0, sizeof info);
    info.pPrinterName = const_cast<char *>(printer);
    info.pPortName = port;
    info.pDriverName = const_cast<char *>(model);
    info.pPrintProcessor = processor;
    info.pDatatype = datatype;
    CPrinterHandle added(AddPrinterA(NULL, 2, reinterpret_cast<BYTE *>(&info)));
    ASSERT_TRUE(added.IsValid()) << GetLastError();
}

TEST(InstalledPrinter, ReadsPrinterAndDriverAndKeepsTheHandle)
{
    std::string directory = ScratchDirectory();
    AddPrinterWithInstallInf("Tovrel Snapshot", "Tovrel Snapshot Model", directory + "snap.ppd");
    CInstalledPrinter printer("Tovrel Snapshot");
    EXPECT_TRUE(printer.PrinterHandle.IsValid());
    EXPECT_STREQ("Tovrel Snapshot", printer.PrinterName.Text);
    EXPECT_STREQ("Tovrel Snapshot Model", printer.GetDriverName());
    EXPECT_STREQ("FILE:", printer.PortName.Text);
    EXPECT_STREQ("winprint", printer.PrintProcessor.Text);
    EXPECT_STREQ("RAW", printer.Datatype.Text);
    EXPECT_STREQ("Tovrel Snapshot Model", printer.DriverInfoName.Text);
    EXPECT_EQ(3u, printer.DriverVersion);
    EXPECT_NE(0, printer.Environment.Text[0]);
    EXPECT_NE(nullptr, std::strstr(printer.DataFile.Text, "snap.ppd")) << printer.DataFile.Text;
    EXPECT_NE(nullptr, std::strstr(printer.DriverPath.Text, "tvdrv.dll")) << printer.DriverPath.Text;
    EXPECT_EQ(0u, printer.LastError);
    printer.Close();
    EXPECT_FALSE(printer.PrinterHandle.IsValid());

    CInstalledPrinter missing;
    EXPECT_FALSE(missing.Read("Tovrel No Such Printer"));
    EXPECT_NE(0u, missing.LastError);
    EXPECT_TRUE(missing.DriverName.IsEmpty());
    EXPECT_FALSE(missing.PrinterHandle.IsValid());
}

std::string CurrentDirectory()
{
    char current[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, current);
    return current;
}

struct CFindResult {
    int Result;
    std::string Inf, Manufacturer, Model;
};

CFindResult Find(const char *printer, const char *model)
{
    char inf[MAX_PATH] = "given.inf", manufacturer[MAX_PATH] = "Given", name[MAX_PATH];
    lstrcpynA(name, model, MAX_PATH);
    CPrinterInf object;
    std::string before = CurrentDirectory();
    int result = object.FindInf(printer, inf, MAX_PATH, manufacturer, MAX_PATH, name, MAX_PATH);
    EXPECT_EQ(before, CurrentDirectory());
    return {result, inf, manufacturer, name};
}

// The search's three places, each a fresh directory: the current one, the
// printer driver directory (shared, so named files are removed again) and
// "DevicePath".
class FindInfTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Root = ScratchDirectory();
        CreateDirectoryA((Root + "current").c_str(), NULL);
        CreateDirectoryA((Root + "device").c_str(), NULL);
        SetCurrentDirectoryA((Root + "current").c_str());
        char drivers[MAX_PATH];
        PrinterDriverDirectory(NULL, drivers);
        Drivers = std::string(drivers) + "\\";
        HKEY key;
        ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_LOCAL_MACHINE,
                                               "Software\\Microsoft\\Windows\\CurrentVersion", 0,
                                               KEY_ALL_ACCESS, &key));
        std::string device = Root + "device";
        RegSetValueExA(key, "DevicePath", 0, REG_SZ, reinterpret_cast<const BYTE *>(device.c_str()),
                       static_cast<DWORD>(device.size() + 1));
        RegCloseKey(key);
    }
    void TearDown() override
    {
        for (const std::string &file : DriverFiles)
            DeleteFileA(file.c_str());
        SetCurrentDirectoryA("C:\\");
    }
    void WriteDriverInf(const std::string &name, const std::string &text)
    {
        DriverFiles.push_back(Drivers + name);
        WriteText(Drivers + name, text);
    }
    std::string Root, Drivers;
    std::vector<std::string> DriverFiles;
};

const std::string Offers5 = PrinterInf(ClassPrinter, Models);

TEST_F(FindInfTest, CurrentDirectoryFirstInThePlatformsOrder)
{
    WriteText(Root + "current\\one.inf", Offers5);
    WriteText(Root + "current\\two.inf", Offers5);
    WriteText(Root + "current\\other.inf", PrinterInf("ClassGUID={4D36E96B-E325-11CE-BFC1-08002BE10318}\r\n",
                                                       Models));
    WriteText(Root + "device\\device.inf", Offers5);
    WriteDriverInf("tovrel_drivers.inf", Offers5);

    std::string first;
    WIN32_FIND_DATAA data;
    CFindHandle find(FindFirstFileA((Root + "current\\*.inf").c_str(), &data));
    ASSERT_TRUE(find.IsValid());
    do {
        if (lstrcmpiA(data.cFileName, "other.inf"))
            first = data.cFileName;
    } while (first.empty() && FindNextFileA(find.Get(), &data));

    CFindResult found = Find("", "Laser 5");
    EXPECT_EQ(1, found.Result);
    EXPECT_STRCASEEQ((Root + "current\\" + first).c_str(), found.Inf.c_str());
    EXPECT_EQ("Acme", found.Manufacturer);
    EXPECT_EQ("Laser 5", found.Model);
}

TEST_F(FindInfTest, DriverDirectoryThenDevicePath)
{
    WriteText(Root + "current\\refused.inf",
              PrinterInf("ClassGUID={4D36E96B-E325-11CE-BFC1-08002BE10318}\r\nClass=Printer\r\n", Models));
    WriteText(Root + "device\\device.inf", Offers5);
    CFindResult found = Find(NULL, "Laser 5");
    EXPECT_EQ(1, found.Result);
    EXPECT_STRCASEEQ((Root + "device\\device.inf").c_str(), found.Inf.c_str());

    WriteDriverInf("tovrel_drivers.inf", Offers5);
    found = Find(NULL, "Laser 5");
    EXPECT_EQ(1, found.Result);
    EXPECT_STRCASEEQ((Drivers + "tovrel_drivers.inf").c_str(), found.Inf.c_str());
}

TEST_F(FindInfTest, NothingFoundLeavesTheBuffersAlone)
{
    WriteText(Root + "current\\one.inf", Offers5);
    CFindResult found = Find("Tovrel No Such Printer", "Laser 9");
    EXPECT_EQ(0, found.Result);
    EXPECT_EQ("given.inf", found.Inf);
    EXPECT_EQ("Given", found.Manufacturer);
    EXPECT_EQ("Laser 9", found.Model);
}

TEST_F(FindInfTest, AnExistingPrinterNamesItsModelAndItsInf)
{
    std::string infPath = Root + "home\\printer.inf";
    CreateDirectoryA((Root + "home").c_str(), NULL);
    WriteText(infPath, PrinterInf(ClassPrinter, "[Manufacturer]\r\nHome=HomeModels\r\n[HomeModels]\r\n"
                                                "Tovrel Home Model=Inst\r\n"));
    AddPrinterWithInstallInf("Tovrel Home", "Tovrel Home Model", Root + "home\\home.ppd");
    // The data file is read where the spooler says it is.
    std::string recorded = CInstalledPrinter("Tovrel Home").DataFile.Text;
    ASSERT_FALSE(recorded.empty());
    CreateDirectoryA(recorded.substr(0, recorded.rfind('\\')).c_str(), NULL);
    DriverFiles.push_back(recorded);
    WriteText(recorded, "[Tovrel Home Model]\r\nInstallINF=" + infPath + "\r\n");
    // A file in the current directory offers the model too, but the
    // printer's own entry comes first.
    WriteText(Root + "current\\one.inf", PrinterInf(ClassPrinter, "[Manufacturer]\r\nElse=ElseModels\r\n"
                                                                  "[ElseModels]\r\nTovrel Home Model=Inst\r\n"));

    CFindResult found = Find("Tovrel Home", "Laser 5");
    EXPECT_EQ(1, found.Result);
    EXPECT_EQ(infPath, found.Inf);
    EXPECT_EQ("Home", found.Manufacturer);
    EXPECT_EQ("Tovrel Home Model", found.Model);

    // Without the entry the model still comes from the printer, and the
    // directories serve it.
    WriteText(recorded, "[Other]\r\nInstallINF=" + infPath + "\r\n");
    WritePrivateProfileStringA(NULL, NULL, NULL, recorded.c_str());
    found = Find("Tovrel Home", "Laser 5");
    EXPECT_EQ(1, found.Result);
    EXPECT_STRCASEEQ((Root + "current\\one.inf").c_str(), found.Inf.c_str());
    EXPECT_EQ("Else", found.Manufacturer);
    EXPECT_EQ("Tovrel Home Model", found.Model);
}

TEST(ReadDeviceKey, OnlyOnTheNineXFamily)
{
    char out[6][MAX_PATH];
    for (auto &text : out)
        lstrcpyA(text, "untouched");
    EXPECT_EQ(0, CPrinterInf::ReadDeviceKey(CBoundedString("Enum\\LPTENUM\\X\\Y"), out[0], out[1], out[2],
                                            out[3], out[4], out[5]));
    for (auto &text : out)
        EXPECT_STREQ("untouched", text);
}

void WriteValues(const std::string &key, const std::vector<std::pair<const char *, const char *>> &values)
{
    HKEY handle;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, NULL, 0, KEY_ALL_ACCESS, NULL,
                                             &handle, NULL));
    for (const auto &value : values)
        RegSetValueExA(handle, value.first, 0, REG_SZ, reinterpret_cast<const BYTE *>(value.second),
                       lstrlenA(value.second) + 1);
    RegCloseKey(handle);
}

TEST(ReadDeviceKeyWin98, ValuesAndThePortOfTheInstance)
{
    WriteValues("Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000",
                {{"Class", "Printer"}, {"DeviceDesc", "Laser 5"}, {"HardwareID", "LPTENUM\\ACMELASER5"},
                 {"Manufacturer", "Acme"}, {"Model", "Laser 5 Model"}});
    WriteValues("Enum\\ROOT\\PRINTER\\0000", {{"PortName", "LPT2:"}});
    WriteValues("Enum\\LPTENUM\\BARE\\LPT&0001", {{"HardwareID", "LPTENUM\\BARE"}});

    static const struct {
        const char *Key;
        int Result;
        const char *Out[6];
    } cases[] = {
        {"Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000", 1,
         {"Printer", "Laser 5", "LPTENUM\\ACMELASER5", "Acme", "Laser 5 Model", "LPT2:"}},
        // Missing values empty their texts; a port device that is not there
        // leaves the port as it was.
        {"Enum\\LPTENUM\\BARE\\LPT&0001", 1, {"", "", "LPTENUM\\BARE", "", "", "before"}},
        {"Enum\\LPTENUM\\NOSUCHDEVICE\\0000", 0, {"before", "before", "before", "before", "before", "before"}},
    };
    for (const auto &c : cases) {
        char out[6][MAX_PATH];
        for (auto &text : out)
            lstrcpyA(text, "before");
        EXPECT_EQ(c.Result, CPrinterInf::ReadDeviceKey(CBoundedString(c.Key), out[0], out[1], out[2], out[3],
                                                       out[4], out[5]))
            << c.Key;
        for (int i = 0; i < 6; ++i)
            EXPECT_STREQ(c.Out[i], out[i]) << c.Key << " output " << i;
    }
}

}  // namespace
