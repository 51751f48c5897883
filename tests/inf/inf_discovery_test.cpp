#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "inf/inf_discovery.h"
#include "registration/spooler.h"
#include "test_support.h"

namespace {

std::string PrinterInf(const std::string &version, const std::string &rest)
{
    return "[Version]\r\nSignature=\"$Windows NT$\"\r\n" + version + rest;
}

const char ClassPrinter[] = "Class=Printer\r\n";
const char OtherGuid[] = "ClassGUID={4D36E96B-E325-11CE-BFC1-08002BE10318}\r\n";
const char Models[] =
    "[Manufacturer]\r\nAcme=AcmeModels\r\n[AcmeModels]\r\n\"Laser 5\" = Inst5,LPTENUM\\AcmeLaser5\r\n";
const std::string Offers5 = PrinterInf(ClassPrinter, Models);

void SetString(const char *key, const char *name, const std::string &value)
{
    HKEY handle;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExA(HKEY_LOCAL_MACHINE, key, 0, NULL, 0, KEY_ALL_ACCESS, NULL, &handle, NULL));
    RegSetValueExA(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE *>(value.c_str()), value.size() + 1);
    RegCloseKey(handle);
}

TEST(MatchInf, ClassModelAndManufacturer)
{
    std::string longSection = "[Manufacturer]\r\nAcme=Long\r\n[Long]\r\n";
    for (int i = 0; i < 12; ++i)
        longSection += "Filler Model Number " + std::to_string(i) + "=Inst\r\n";
    longSection += "Late=Inst\r\n";
    const struct {
        std::string Text;
        const char *Model;
        const char *Manufacturer;  // null: no match
    } cases[] = {
        {PrinterInf("ClassGUID={4d36e979-e325-11ce-bfc1-08002be10318}\r\n", Models), "Laser 5", "Acme"},
        {PrinterInf(std::string(OtherGuid) + ClassPrinter, Models), "Laser 5", nullptr},
        {PrinterInf("Class=pRINTER\r\n", Models), "laser 5", "Acme"},
        {PrinterInf("Class=Keyboard\r\n", Models), "Laser 5", nullptr},
        {PrinterInf("", Models), "Laser 5", nullptr},
        {Offers5, "Laser 6", nullptr},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nBare\r\n[Bare]\r\nPlain=Inst\r\n"), "Plain", "Bare"},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\nA=Empty\r\n\"B Corp\"=BModels\r\n[BModels]\r\nB1=Inst\r\n"),
         "B1", "B Corp"},
        {PrinterInf(ClassPrinter, "[Manufacturer]\r\n%Maker%=TokModels\r\n[TokModels]\r\n%Model%=Inst\r\n"
                                  "[Strings]\r\nMaker=\"Acme Corp\"\r\nModel=\"Laser Tok\"\r\n"), "Laser Tok", "Acme Corp"},
        // The profile calls read 260 bytes of a section's key names.
        {PrinterInf(ClassPrinter, longSection), "Late", nullptr},
        {PrinterInf(ClassPrinter, longSection), "Filler Model Number 1", "Acme"},
    };
    std::string directory = ScratchDirectory();
    CPrinterInf inf;
    int n = 0;
    for (const auto &c : cases) {
        // A new name for each case: the profile calls cache a file.
        std::string path = directory + "match" + std::to_string(n++) + ".inf";
        WriteText(path, c.Text);
        CBoundedString manufacturer("Given");
        EXPECT_EQ(c.Manufacturer ? 1 : 0,
                  inf.MatchInf(CBoundedString(path.c_str()), CBoundedString(c.Model), manufacturer)) << c.Text;
        if (c.Manufacturer) {
            EXPECT_STREQ(c.Manufacturer, manufacturer.Text) << c.Text;
        }
    }
}

// A driver and a printer on it. The spooler records the driver's files in
// its own driver directory.
void AddPrinterWithDataFile(const char *printer, const char *model, const std::string &dataFile)
{
    std::string driverPath = dataFile.substr(0, dataFile.rfind('\\') + 1) + "tvdrv.dll";
    WriteText(driverPath, "not a library");
    char configFile[] = "tvui.txt", port[] = "FILE:", processor[] = "winprint", datatype[] = "RAW";
    DRIVER_INFO_3A driver;
    std::memset(&driver, 0, sizeof driver);
    driver.cVersion = 3;
    driver.pName = const_cast<char *>(model);
    driver.pDriverPath = const_cast<char *>(driverPath.c_str());
    driver.pDataFile = const_cast<char *>(dataFile.c_str());
    driver.pConfigFile = configFile;
    ASSERT_TRUE(AddPrinterDriverA(NULL, 3, reinterpret_cast<BYTE *>(&driver))) << GetLastError();
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

std::string CurrentDirectory()
{
    char current[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, current);
    return current;
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
        SetString("Software\\Microsoft\\Windows\\CurrentVersion", "DevicePath", Root + "device");
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
    // FindInf, checking that the current directory is restored.
    int Find(const char *printer, const char *model)
    {
        lstrcpyA(Inf, "given.inf");
        lstrcpyA(Manufacturer, "Given");
        lstrcpynA(Model, model, MAX_PATH);
        std::string before = CurrentDirectory();
        int result = CPrinterInf().FindInf(printer, Inf, MAX_PATH, Manufacturer, MAX_PATH, Model, MAX_PATH);
        EXPECT_EQ(before, CurrentDirectory());
        return result;
    }
    std::string Root, Drivers;
    std::vector<std::string> DriverFiles;
    char Inf[MAX_PATH], Manufacturer[MAX_PATH], Model[MAX_PATH];
};

TEST_F(FindInfTest, CurrentDirectoryFirstInThePlatformsOrder)
{
    WriteText(Root + "current\\one.inf", Offers5);
    EXPECT_EQ(0, Find("Tovrel No Such Printer", "Laser 9"));
    EXPECT_STREQ("given.inf", Inf) << "nothing found leaves the buffers alone";
    EXPECT_STREQ("Given", Manufacturer);

    WriteText(Root + "current\\two.inf", Offers5);
    WriteText(Root + "current\\other.inf", PrinterInf(OtherGuid, Models));
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

    EXPECT_EQ(1, Find("", "Laser 5"));
    EXPECT_STRCASEEQ((Root + "current\\" + first).c_str(), Inf);
    EXPECT_STREQ("Acme", Manufacturer);
    EXPECT_STREQ("Laser 5", Model);
}

TEST_F(FindInfTest, DriverDirectoryThenDevicePath)
{
    WriteText(Root + "current\\refused.inf", PrinterInf(std::string(OtherGuid) + ClassPrinter, Models));
    WriteText(Root + "device\\device.inf", Offers5);
    EXPECT_EQ(1, Find(NULL, "Laser 5"));
    EXPECT_STRCASEEQ((Root + "device\\device.inf").c_str(), Inf);

    WriteDriverInf("tovrel_drivers.inf", Offers5);
    EXPECT_EQ(1, Find(NULL, "Laser 5"));
    EXPECT_STRCASEEQ((Drivers + "tovrel_drivers.inf").c_str(), Inf);
}

TEST_F(FindInfTest, AnExistingPrinterNamesItsModelAndItsInf)
{
    CreateDirectoryA((Root + "home").c_str(), NULL);
    std::string infPath = Root + "home\\printer.inf";
    WriteText(infPath, PrinterInf(ClassPrinter, "[Manufacturer]\r\nHome=M\r\n[M]\r\nTovrel Home Model=Inst\r\n"));
    AddPrinterWithDataFile("Tovrel Home", "Tovrel Home Model", Root + "home\\home.ppd");
    // The data file is read where the spooler says it is.
    std::string recorded = CInstalledPrinter("Tovrel Home").DataFile.Text;
    ASSERT_FALSE(recorded.empty());
    CreateDirectoryA(recorded.substr(0, recorded.rfind('\\')).c_str(), NULL);
    DriverFiles.push_back(recorded);
    WriteText(recorded, "[Tovrel Home Model]\r\nInstallINF=" + infPath + "\r\n");
    // The current directory offers the model too, but the printer's own entry comes first.
    WriteText(Root + "current\\one.inf",
              PrinterInf(ClassPrinter, "[Manufacturer]\r\nElse=E\r\n[E]\r\nTovrel Home Model=Inst\r\n"));

    EXPECT_EQ(1, Find("Tovrel Home", "Laser 5"));
    EXPECT_EQ(infPath, Inf);
    EXPECT_STREQ("Home", Manufacturer);
    EXPECT_STREQ("Tovrel Home Model", Model);

    // Without the entry the model still comes from the printer, and the directories serve it.
    WriteText(recorded, "[Other]\r\nInstallINF=" + infPath + "\r\n");
    WritePrivateProfileStringA(NULL, NULL, NULL, recorded.c_str());
    EXPECT_EQ(1, Find("Tovrel Home", "Laser 5"));
    EXPECT_STRCASEEQ((Root + "current\\one.inf").c_str(), Inf);
    EXPECT_STREQ("Else", Manufacturer);
    EXPECT_STREQ("Tovrel Home Model", Model);
}

TEST(ReadDeviceKeyWin98, ValuesAndThePortOfTheInstance)
{
    const struct {
        const char *Key, *Name, *Value;
    } values[] = {
        {"Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000", "Class", "Printer"},
        {"Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000", "DeviceDesc", "Laser 5"},
        {"Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000", "HardwareID", "LPTENUM\\ACMELASER5"},
        {"Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000", "Manufacturer", "Acme"},
        {"Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000", "Model", "Laser 5 Model"},
        {"Enum\\ROOT\\PRINTER\\0000", "PortName", "LPT2:"},
        {"Enum\\LPTENUM\\BARE\\LPT&0001", "HardwareID", "LPTENUM\\BARE"},
    };
    for (const auto &v : values)
        SetString(v.Key, v.Name, v.Value);
    const struct {
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
                                                       out[4], out[5])) << c.Key;
        for (int i = 0; i < 6; ++i)
            EXPECT_STREQ(c.Out[i], out[i]) << c.Key << " output " << i;
    }
}

}  // namespace
