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
    DRIVER_INFO_3A driver = {3, const_cast<char *>(model), NULL, const_cast<char *>(driverPath.c_str()),
                             const_cast<char *>(dataFile.c_str()), configFile, NULL, NULL, NULL, NULL};
    ASSERT_TRUE(AddPrinterDriverA(NULL, 3, reinterpret_cast<BYTE *>(&driver))) << GetLastError();
    PRINTER_INFO_2A info = {};
    info.pPrinterName = const_cast<char *>(printer);
    info.pPortName = port;
    info.pDriverName = const_cast<char *>(model);
    info.pPrintProcessor = processor;
    info.pDatatype = datatype;
    ASSERT_TRUE(CPrinterHandle(AddPrinterA(NULL, 2, reinterpret_cast<BYTE *>(&info))).IsValid()) << GetLastError();
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

// Each step adds a file (under the driver directory when Dir is null) and
// searches again; what is found moves to the place searched earlier. An empty
// Found is whichever of the current directory's offers the platform lists
// first; a null one is nothing found, which leaves the buffers alone.
TEST_F(FindInfTest, CurrentDirectoryThenDriverDirectoryThenDevicePath)
{
    const struct {
        const char *Dir, *Name;
        std::string Text;
        const char *Printer, *Model, *Found;
    } steps[] = {
        {"current", "refused.inf", PrinterInf(std::string(OtherGuid) + ClassPrinter, Models), NULL, "Laser 5", nullptr},
        {"device", "device.inf", Offers5, NULL, "Laser 5", "device\\device.inf"},
        {nullptr, "tovrel_drivers.inf", Offers5, "", "Laser 5", "tovrel_drivers.inf"},
        {"current", "one.inf", Offers5, "Tovrel No Such Printer", "Laser 9", nullptr},
        {"current", "two.inf", Offers5, "", "Laser 5", ""},
    };
    for (const auto &s : steps) {
        std::string path = s.Dir ? Root + s.Dir + "\\" + s.Name : Drivers + s.Name;
        if (!s.Dir)
            DriverFiles.push_back(path);
        WriteText(path, s.Text);
        std::string found = s.Found ? (s.Dir ? Root : Drivers) + s.Found : "given.inf";
        if (s.Found && !*s.Found) {
            WIN32_FIND_DATAA data;
            CFindHandle find(FindFirstFileA((Root + "current\\*.inf").c_str(), &data));
            while (!lstrcmpiA(data.cFileName, "refused.inf") && FindNextFileA(find.Get(), &data)) {
            }
            found = Root + "current\\" + data.cFileName;
        }
        EXPECT_EQ(s.Found ? 1 : 0, Find(s.Printer, s.Model)) << s.Name;
        EXPECT_STRCASEEQ(found.c_str(), Inf) << s.Name;
        EXPECT_STREQ(s.Found ? "Acme" : "Given", Manufacturer) << s.Name;
        EXPECT_STREQ(s.Model, Model) << s.Name;
    }
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
    const char Laser[] = "Enum\\LPTENUM\\ACMELASER5\\ROOT&PRINTER&0000";
    const struct {
        const char *Key, *Name, *Value;
    } values[] = {
        {Laser, "Class", "Printer"}, {Laser, "DeviceDesc", "Laser 5"}, {Laser, "HardwareID", "LPTENUM\\ACMELASER5"},
        {Laser, "Manufacturer", "Acme"}, {Laser, "Model", "Laser 5 Model"},
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
        {Laser, 1, {"Printer", "Laser 5", "LPTENUM\\ACMELASER5", "Acme", "Laser 5 Model", "LPT2:"}},
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
