#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "inf/inf_discovery.h"
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
