#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "registration/registry_section.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string TestKey = "Software\\Tovrel Tests\\AddReg";
const std::string Uninstall = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data";

class AddRegistryTest : public ::testing::Test {
protected:
    void SetUp() override { Clean(); }
    void TearDown() override { Clean(); }
    void Clean()
    {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, "Software\\Tovrel Tests");
        DeleteKeyTree(HKEY_CURRENT_USER, "Software\\Tovrel Tests");
        DeleteKeyTree(HKEY_LOCAL_MACHINE, Uninstall);
    }
    // Loads an INF whose section "Reg" holds the given lines.
    void Load(const std::string &lines)
    {
        std::string path = ScratchDirectory() + "addreg.inf";
        WriteText(path, "[Version]\r\nClass=Printer\r\n[Reg]\r\n" + lines);
        ASSERT_TRUE(Printer.Load(path.c_str()));
        Printer.Model = CBoundedString("Acme Laser");
        Printer.AddRegSections = CBoundedString("Reg");
    }
    CPrinterInf Printer;
};

TEST_F(AddRegistryTest, FlagsSelectTheTypeAndTheDataIsTheTextItself)
{
    Load("HKLM,Software\\Tovrel Tests\\AddReg,Text,0,hello\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Binary,1,0a0b\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Multi,0x00010000,one\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Dword,0x10001,1234\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,DwordDecimal,65537,7\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,UpperHex,0X10001,upper\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Expand,0x20000,%SystemRoot%\\x\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Masked,0x00010002,masked\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,None,0x20001,none\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,EmptyFlags,,empty flags\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Rest,0,a,b, c\r\n"
         "hklm,Software\\Tovrel Tests\\AddReg,Lower,0, \"quoted\" \r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,,0,default\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Twice,0,first\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Twice,0,second\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Equals,0,a=b\r\n"
         "HKCU,Software\\Tovrel Tests\\AddReg,User,0,user\r\n"
         "Bogus,Software\\Tovrel Tests\\AddReg\\Carried,Carried,0,carried\r\n");
    EXPECT_EQ(1, Printer.AddRegistry());

    // Wine, like NT, keeps a NUL behind string data when the byte after the
    // given length is one; the text passed here always has one there.
    const struct {
        HKEY Root;
        const char *Key, *Name;
        DWORD Type;
        std::string Data;
    } cases[] = {
        {HKEY_LOCAL_MACHINE, "", "Text", REG_SZ, std::string("hello", 6)},
        {HKEY_LOCAL_MACHINE, "", "Binary", REG_BINARY, "0a0b"},
        {HKEY_LOCAL_MACHINE, "", "Multi", REG_MULTI_SZ, std::string("one", 4)},
        {HKEY_LOCAL_MACHINE, "", "Dword", REG_DWORD, "1234"},
        {HKEY_LOCAL_MACHINE, "", "DwordDecimal", REG_DWORD, "7"},
        {HKEY_LOCAL_MACHINE, "", "UpperHex", REG_SZ, std::string("upper", 6)},
        {HKEY_LOCAL_MACHINE, "", "Expand", REG_EXPAND_SZ, std::string("%SystemRoot%\\x", 15)},
        {HKEY_LOCAL_MACHINE, "", "Masked", REG_MULTI_SZ, std::string("masked", 7)},
        {HKEY_LOCAL_MACHINE, "", "None", REG_NONE, "none"},
        {HKEY_LOCAL_MACHINE, "", "EmptyFlags", REG_SZ, std::string("empty flags", 12)},
        {HKEY_LOCAL_MACHINE, "", "Rest", REG_SZ, std::string("a,b, c", 7)},
        {HKEY_LOCAL_MACHINE, "", "Lower", REG_SZ, std::string(" \"quoted\"", 10)},
        {HKEY_LOCAL_MACHINE, "", "", REG_SZ, std::string("default", 8)},
        {HKEY_LOCAL_MACHINE, "", "Twice", REG_SZ, std::string("second", 7)},
        {HKEY_LOCAL_MACHINE, "", "Equals", REG_SZ, std::string("ab", 3)},
        {HKEY_CURRENT_USER, "", "User", REG_SZ, std::string("user", 5)},
        {HKEY_CURRENT_USER, "\\Carried", "Carried", REG_SZ, std::string("carried", 8)},
    };
    for (const auto &c : cases) {
        CStoredValue value = ReadStoredValue(c.Root, TestKey + c.Key, c.Name);
        EXPECT_TRUE(value.Exists) << c.Name;
        EXPECT_EQ(c.Type, value.Type) << c.Name;
        EXPECT_EQ(c.Data, value.Data) << c.Name;
    }
    EXPECT_EQ(cases[0].Data, ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Text").Data);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, TestKey + "\\Carried")) << "the root of the line before";
}

TEST_F(AddRegistryTest, EveryLineIsOnRecordUncutAndShortLinesWriteNothing)
{
    const char *lines[] = {
        "HKLM,Software\\Tovrel Tests\\AddReg\\Four,Four,0",
        "HKLM,Software\\Tovrel Tests\\AddReg\\Empty,Empty,0,",
        "HKLM,Software\\Tovrel Tests\\AddReg,Written,0x1,data,more",
    };
    std::string text;
    for (const char *line : lines)
        text += std::string(line) + "\r\n";
    Load(text);
    EXPECT_EQ(1, Printer.AddRegistry());

    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, TestKey + "\\Four"));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, TestKey + "\\Empty"));
    EXPECT_EQ("data,more", ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Written").Data);
    std::vector<std::string> names = StoredValueNames(HKEY_LOCAL_MACHINE, Uninstall + "\\Acme Laser\\registry");
    EXPECT_EQ(3u, names.size());
    for (const char *line : lines) {
        EXPECT_NE(names.end(), std::find(names.begin(), names.end(), line)) << line;
        EXPECT_EQ(std::string("1", 2), ReadStoredValue(HKEY_LOCAL_MACHINE, Uninstall + "\\Acme Laser\\registry", line).Data);
    }
}

TEST_F(AddRegistryTest, AnUnknownRootOnTheFirstLineWritesNothing)
{
    Load("HKEY_LOCAL_MACHINE,Software\\Tovrel Tests\\AddReg,Long,0,long\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,Known,0,known\r\n");
    EXPECT_EQ(1, Printer.AddRegistry());
    EXPECT_FALSE(ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Long").Exists);
    EXPECT_FALSE(ReadStoredValue(HKEY_CURRENT_USER, TestKey, "Long").Exists);
    EXPECT_TRUE(ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Known").Exists);
}

TEST_F(AddRegistryTest, TheInstalledFileFlagGivesThePathOnRecord)
{
    // What the copy stage leaves: the full paths of the model's files.
    Printer.Model = CBoundedString("Acme Laser");
    Printer.LogUninstall(UninstallFiles, "C:\\windows\\system32\\other.dll", "1");
    Printer.LogUninstall(UninstallFiles, "C:\\windows\\system32\\spool\\acmeui.dll", "1");
    Load("HKLM,Software\\Tovrel Tests\\AddReg,Found,0x1000,ACMEUI.DLL\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,FoundDword,0x11001,acmeui.dll\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,NotOnRecord,0x1000,absent.dll\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,NoFlag,0,acmeui.dll\r\n"
         "HKLM,Software\\Tovrel Tests\\AddReg,PartOfName,4096,acmeui\r\n");
    EXPECT_EQ(1, Printer.AddRegistry());
    const std::string full = "C:\\windows\\system32\\spool\\acmeui.dll";
    const struct {
        const char *Name;
        DWORD Type;
        std::string Data;
    } cases[] = {
        {"Found", REG_SZ, full + '\0'},
        {"FoundDword", REG_DWORD, full},
        {"NotOnRecord", REG_SZ, std::string("absent.dll", 11)},
        {"NoFlag", REG_SZ, std::string("acmeui.dll", 11)},
        {"PartOfName", REG_SZ, std::string("acmeui", 7)},
    };
    for (const auto &c : cases) {
        CStoredValue value = ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, c.Name);
        EXPECT_EQ(c.Type, value.Type) << c.Name;
        EXPECT_EQ(c.Data, value.Data) << c.Name;
    }
}

TEST_F(AddRegistryTest, WithoutFilesOnRecordTheBareNameIsWritten)
{
    Load("HKLM,Software\\Tovrel Tests\\AddReg,Bare,0x1000,acmeui.dll\r\n");
    EXPECT_EQ(1, Printer.AddRegistry());
    EXPECT_EQ(std::string("acmeui.dll", 11), ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Bare").Data);
}

TEST_F(AddRegistryTest, AMissingOrEmptySectionGivesZero)
{
    Load("");
    EXPECT_EQ(0, Printer.AddRegistry()) << "empty section";
    Printer.AddRegSections = CBoundedString("Absent");
    EXPECT_EQ(0, Printer.AddRegistry());
    Printer.AddRegSections = CBoundedString();
    EXPECT_EQ(0, Printer.AddRegistry());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Uninstall + "\\Acme Laser\\registry"));
}

}  // namespace
