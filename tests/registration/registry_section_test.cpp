#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "test_support.h"

namespace {

const std::string Record = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Acme Laser\\registry";
const std::string Full = "C:\\windows\\system32\\spool\\acmeui.dll";

// Each line of a section "Reg" and what it leaves below "Software\Tovrel
// Tests\AddReg" (Key is the rest of the key); a Type of 0 for no value.
// Wine, like NT, keeps a NUL behind string data when the byte after the given
// length is one; the text passed here always has one there.
const struct {
    const char *Line;
    HKEY Root;
    const char *Key, *Name;
    DWORD Type;
    std::string Data;
} Lines[] = {
    {"HKLM,Software\\Tovrel Tests\\AddReg,Text,0,hello", HKEY_LOCAL_MACHINE, "", "Text", REG_SZ, {"hello", 6}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Binary,1,0a0b", HKEY_LOCAL_MACHINE, "", "Binary", REG_BINARY, "0a0b"},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Multi,0x00010000,one", HKEY_LOCAL_MACHINE, "", "Multi", REG_MULTI_SZ, {"one", 4}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Dword,0x10001,1234", HKEY_LOCAL_MACHINE, "", "Dword", REG_DWORD, "1234"},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Dec,65537,7", HKEY_LOCAL_MACHINE, "", "Dec", REG_DWORD, "7"},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Upper,0X10001,u", HKEY_LOCAL_MACHINE, "", "Upper", REG_SZ, {"u", 2}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Expand,0x20000,%SystemRoot%", HKEY_LOCAL_MACHINE, "", "Expand",
     REG_EXPAND_SZ, {"%SystemRoot%", 13}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Masked,0x00010002,m", HKEY_LOCAL_MACHINE, "", "Masked", REG_MULTI_SZ, {"m", 2}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,None,0x20001,none", HKEY_LOCAL_MACHINE, "", "None", REG_NONE, "none"},
    {"HKLM,Software\\Tovrel Tests\\AddReg,NoFlags,,e", HKEY_LOCAL_MACHINE, "", "NoFlags", REG_SZ, {"e", 2}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Rest,0,a,b, c", HKEY_LOCAL_MACHINE, "", "Rest", REG_SZ, {"a,b, c", 7}},
    {"hklm,Software\\Tovrel Tests\\AddReg,Lower,0, \"q\" ", HKEY_LOCAL_MACHINE, "", "Lower", REG_SZ, {" \"q\"", 5}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,,0,default", HKEY_LOCAL_MACHINE, "", "", REG_SZ, {"default", 8}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Equals,0,a=b", HKEY_LOCAL_MACHINE, "", "Equals", REG_SZ, {"ab", 3}},
    // The installed-file flag gives the path of the file on record whose name is the data.
    {"HKLM,Software\\Tovrel Tests\\AddReg,Found,0x1000,ACMEUI.DLL", HKEY_LOCAL_MACHINE, "", "Found", REG_SZ, Full + '\0'},
    {"HKLM,Software\\Tovrel Tests\\AddReg,FoundDword,0x11001,acmeui.dll", HKEY_LOCAL_MACHINE, "", "FoundDword",
     REG_DWORD, Full},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Absent,0x1000,absent.dll", HKEY_LOCAL_MACHINE, "", "Absent", REG_SZ,
     {"absent.dll", 11}},
    {"HKLM,Software\\Tovrel Tests\\AddReg,Part,4096,acmeui", HKEY_LOCAL_MACHINE, "", "Part", REG_SZ, {"acmeui", 7}},
    {"HKCU,Software\\Tovrel Tests\\AddReg,User,0,user", HKEY_CURRENT_USER, "", "User", REG_SZ, {"user", 5}},
    // An unknown root is the root of the line before.
    {"Bogus,Software\\Tovrel Tests\\AddReg\\C,C,0,c", HKEY_CURRENT_USER, "\\C", "C", REG_SZ, {"c", 2}},
    // Lines short of data write nothing, not even the key, but are on record all the same.
    {"HKLM,Software\\Tovrel Tests\\AddReg\\Four,Four,0", HKEY_LOCAL_MACHINE, "\\Four", "Four", 0, ""},
    {"HKLM,Software\\Tovrel Tests\\AddReg\\Empty,Empty,0,", HKEY_LOCAL_MACHINE, "\\Empty", "Empty", 0, ""},
};

int AddRegistry(CPrinterInf &printer, const std::string &lines)
{
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
        DeleteKeyTree(root, "Software\\Tovrel Tests");
    DeleteKeyTree(HKEY_LOCAL_MACHINE, Record);
    LoadModelInf(printer, ScratchDirectory() + "addreg.inf", "[Reg]\r\n" + lines);
    printer.AddRegSections = CBoundedString("Reg");
    // What the copy stage leaves: the full paths of the model's files.
    printer.LogUninstall(UninstallFiles, "C:\\windows\\system32\\other.dll", "1");
    printer.LogUninstall(UninstallFiles, Full.c_str(), "1");
    return printer.AddRegistry();
}

TEST(AddRegistry, FlagsSelectTheTypeAndEveryLineIsOnRecord)
{
    std::string text;
    for (const auto &c : Lines)
        text += std::string(c.Line) + "\r\n";
    CPrinterInf printer;
    EXPECT_EQ(1, AddRegistry(printer, text));
    for (const auto &c : Lines) {
        CStoredValue value = ReadStoredValue(c.Root, "Software\\Tovrel Tests\\AddReg" + std::string(c.Key), c.Name);
        EXPECT_EQ(c.Type, value.Type) << c.Line;
        EXPECT_EQ(c.Data, value.Data) << c.Line;
        if (*c.Key && !c.Type) {
            EXPECT_FALSE(KeyExists(c.Root, "Software\\Tovrel Tests\\AddReg" + std::string(c.Key))) << c.Line;
        }
        // On record as the reader gives the line: blanks at its end stripped, cut at its first '='.
        const std::string name = std::string(c.Line).substr(0, std::string(c.Line).find_last_not_of(' ') + 1);
        if (name.find('=') == std::string::npos) {
            EXPECT_EQ(std::string("1", 2), ReadStoredValue(HKEY_LOCAL_MACHINE, Record, name.c_str()).Data) << c.Line;
        }
    }
    EXPECT_EQ(sizeof Lines / sizeof *Lines, StoredValueNames(HKEY_LOCAL_MACHINE, Record).size());
}

TEST(AddRegistry, AnUnknownRootOnTheFirstLineWritesNothingAndNoLinesGiveZero)
{
    CPrinterInf printer, empty;
    EXPECT_EQ(1, AddRegistry(printer, "HKEY_LOCAL_MACHINE,Software\\Tovrel Tests\\AddReg,Long,0,long\r\n"
                                      "HKLM,Software\\Tovrel Tests\\AddReg,Known,0,known\r\n"));
    EXPECT_FALSE(ReadStoredValue(HKEY_LOCAL_MACHINE, "Software\\Tovrel Tests\\AddReg", "Long").Exists);
    EXPECT_FALSE(ReadStoredValue(HKEY_CURRENT_USER, "Software\\Tovrel Tests\\AddReg", "Long").Exists);
    EXPECT_TRUE(ReadStoredValue(HKEY_LOCAL_MACHINE, "Software\\Tovrel Tests\\AddReg", "Known").Exists);
    EXPECT_EQ(0, AddRegistry(empty, "")) << "an empty section";
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Record));
}

}  // namespace
