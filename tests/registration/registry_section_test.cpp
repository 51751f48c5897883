#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string TestKey = "Software\\Tovrel Tests\\AddReg";
const std::string Record = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Acme Laser\\registry";

// Runs the stage over a section "Reg" of the given lines, on clean keys.
int AddRegistry(CPrinterInf &printer, const std::string &lines)
{
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
        DeleteKeyTree(root, "Software\\Tovrel Tests");
    DeleteKeyTree(HKEY_LOCAL_MACHINE, Record);
    LoadModelInf(printer, ScratchDirectory() + "addreg.inf", "[Reg]\r\n" + lines);
    printer.AddRegSections = CBoundedString("Reg");
    return printer.AddRegistry();
}

TEST(AddRegistry, FlagsSelectTheTypeAndTheDataIsTheTextItself)
{
    CPrinterInf printer;
    const std::string lines[] = {
        "HKLM,Software\\Tovrel Tests\\AddReg,Text,0,hello", "HKLM,Software\\Tovrel Tests\\AddReg,Binary,1,0a0b",
        "HKLM,Software\\Tovrel Tests\\AddReg,Multi,0x00010000,one",
        "HKLM,Software\\Tovrel Tests\\AddReg,Dword,0x10001,1234",
        "HKLM,Software\\Tovrel Tests\\AddReg,DwordDecimal,65537,7",
        "HKLM,Software\\Tovrel Tests\\AddReg,UpperHex,0X10001,upper",
        "HKLM,Software\\Tovrel Tests\\AddReg,Expand,0x20000,%SystemRoot%\\x",
        "HKLM,Software\\Tovrel Tests\\AddReg,Masked,0x00010002,masked",
        "HKLM,Software\\Tovrel Tests\\AddReg,None,0x20001,none",
        "HKLM,Software\\Tovrel Tests\\AddReg,EmptyFlags,,empty flags",
        "HKLM,Software\\Tovrel Tests\\AddReg,Rest,0,a,b, c", "hklm,Software\\Tovrel Tests\\AddReg,Lower,0, \"q\" ",
        "HKLM,Software\\Tovrel Tests\\AddReg,,0,default", "HKLM,Software\\Tovrel Tests\\AddReg,Twice,0,first",
        "HKLM,Software\\Tovrel Tests\\AddReg,Twice,0,second", "HKLM,Software\\Tovrel Tests\\AddReg,Equals,0,a=b",
        "HKCU,Software\\Tovrel Tests\\AddReg,User,0,user",
        "Bogus,Software\\Tovrel Tests\\AddReg\\Carried,Carried,0,carried",
        // Lines short of data write nothing, but are on record all the same.
        "HKLM,Software\\Tovrel Tests\\AddReg\\Four,Four,0", "HKLM,Software\\Tovrel Tests\\AddReg\\Empty,Empty,0,",
    };
    std::string text;
    for (const std::string &line : lines)
        text += line + "\r\n";
    EXPECT_EQ(1, AddRegistry(printer, text));
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
        {HKEY_LOCAL_MACHINE, "", "Lower", REG_SZ, std::string(" \"q\"", 5)},
        {HKEY_LOCAL_MACHINE, "", "", REG_SZ, std::string("default", 8)},
        {HKEY_LOCAL_MACHINE, "", "Twice", REG_SZ, std::string("second", 7)},
        {HKEY_LOCAL_MACHINE, "", "Equals", REG_SZ, std::string("ab", 3)},
        {HKEY_CURRENT_USER, "", "User", REG_SZ, std::string("user", 5)},
        // An unknown root is the root of the line before.
        {HKEY_CURRENT_USER, "\\Carried", "Carried", REG_SZ, std::string("carried", 8)},
    };
    for (const auto &c : cases) {
        CStoredValue value = ReadStoredValue(c.Root, TestKey + c.Key, c.Name);
        EXPECT_EQ(c.Type, value.Type) << c.Name;
        EXPECT_EQ(c.Data, value.Data) << c.Name;
    }
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, TestKey + "\\Four"));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, TestKey + "\\Empty"));
    std::vector<std::string> names = StoredValueNames(HKEY_LOCAL_MACHINE, Record);
    EXPECT_EQ(20u, names.size()) << "every line, uncut";
    for (int i : {10, 18, 19})
        EXPECT_EQ(std::string("1", 2), ReadStoredValue(HKEY_LOCAL_MACHINE, Record, lines[i].c_str()).Data) << i;
}

TEST(AddRegistry, AnUnknownRootOnTheFirstLineWritesNothingAndNoLinesGiveZero)
{
    CPrinterInf printer;
    EXPECT_EQ(1, AddRegistry(printer, "HKEY_LOCAL_MACHINE,Software\\Tovrel Tests\\AddReg,Long,0,long\r\n"
                                      "HKLM,Software\\Tovrel Tests\\AddReg,Known,0,known\r\n"));
    EXPECT_FALSE(ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Long").Exists);
    EXPECT_FALSE(ReadStoredValue(HKEY_CURRENT_USER, TestKey, "Long").Exists);
    EXPECT_TRUE(ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Known").Exists);
    CPrinterInf empty;
    EXPECT_EQ(0, AddRegistry(empty, "")) << "an empty section";
    empty.AddRegSections = CBoundedString("Absent");
    EXPECT_EQ(0, empty.AddRegistry());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Record));
}

TEST(AddRegistry, TheInstalledFileFlagGivesThePathOnRecord)
{
    const std::string lines = "HKLM,Software\\Tovrel Tests\\AddReg,Found,0x1000,ACMEUI.DLL\r\n"
                              "HKLM,Software\\Tovrel Tests\\AddReg,FoundDword,0x11001,acmeui.dll\r\n"
                              "HKLM,Software\\Tovrel Tests\\AddReg,NotOnRecord,0x1000,absent.dll\r\n"
                              "HKLM,Software\\Tovrel Tests\\AddReg,NoFlag,0,acmeui.dll\r\n"
                              "HKLM,Software\\Tovrel Tests\\AddReg,PartOfName,4096,acmeui\r\n";
    CPrinterInf printer;
    EXPECT_EQ(1, AddRegistry(printer, lines));
    EXPECT_EQ(std::string("ACMEUI.DLL", 11), ReadStoredValue(HKEY_LOCAL_MACHINE, TestKey, "Found").Data)
        << "without files on record the bare name stands";
    // What the copy stage leaves: the full paths of the model's files.
    printer.LogUninstall(UninstallFiles, "C:\\windows\\system32\\other.dll", "1");
    printer.LogUninstall(UninstallFiles, "C:\\windows\\system32\\spool\\acmeui.dll", "1");
    EXPECT_EQ(1, printer.AddRegistry());
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

}  // namespace
