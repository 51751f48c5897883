// The report's text helpers: JSON escaping, and reading registry and
// shortcut lines apart as the install cuts them.
#include <gtest/gtest.h>

#include "report/addreg_line.h"
#include "report/json_text.h"
#include "report/shortcut_line.h"

TEST(ReportText, JsonEscape)
{
    static const struct { const char *Text, *Escaped; } Cases[] = {
        {"C:\\windows\\PLENARC.DRV", "C:\\\\windows\\\\PLENARC.DRV"},
        {"say \"1\"", "say \\\"1\\\""},
        {"\r\n\t\b\f", "\\r\\n\\t\\b\\f"},
        {"\x01\x1f\x7f", "\\u0001\\u001f\\u007f"},
        {"caf\xc3\xa9", "caf\xc3\xa9"},  // UTF-8 passes whole
    };
    for (const auto &c : Cases)
        EXPECT_EQ(c.Escaped, JsonEscape(c.Text)) << c.Text;
}

TEST(ReportText, AddRegLineFields)
{
    static const struct { const char *Line, *Root, *Subkey, *Name, *Flags, *Value; bool HasValue; } Cases[] = {
        {"HKLM,Software\\X,Model,0,Plenarc Demo 600", "HKLM", "Software\\X", "Model", "0", "Plenarc Demo 600", true},
        {"HKCU,K,List,0x10000,a,b,c", "HKCU", "K", "List", "0x10000", "a,b,c", true},
        {"HKLM,K,Name,0,", "HKLM", "K", "Name", "0", "", false},
        {"HKLM,K", "HKLM", "K", "", "", "", false},
        {" HKLM , K ,,1, x ", " HKLM ", " K ", "", "1", " x ", true},
    };
    for (const auto &c : Cases) {
        AddRegLine line = ParseAddRegLine(c.Line);
        EXPECT_EQ(c.Root, line.Root) << c.Line;
        EXPECT_EQ(c.Subkey, line.Subkey) << c.Line;
        EXPECT_EQ(c.Name, line.ValueName) << c.Line;
        EXPECT_EQ(c.Flags, line.Flags) << c.Line;
        EXPECT_EQ(c.Value, line.Value) << c.Line;
        EXPECT_EQ(c.HasValue, line.HasValue) << c.Line;
    }
}

TEST(ReportText, AddRegRootsAndTypes)
{
    EXPECT_EQ(AddRegRoot::LocalMachine, AddRegRootOf("hklm"));
    EXPECT_EQ(AddRegRoot::Users, AddRegRootOf("HKU"));
    EXPECT_EQ(AddRegRoot::Unknown, AddRegRootOf(" HKLM "));
    static const struct { const char *Flags; unsigned long Type; } Cases[] = {
        {"", RegTypeString}, {"0x10001", RegTypeDword}, {"65537", RegTypeDword}, {"0X10001", RegTypeString},
        {"0x00010002", RegTypeMultiString}, {"0x20000", RegTypeExpandString}, {"1", RegTypeBinary},
        {"0x20001", RegTypeNone}, {"0x1000", RegTypeString}, {" +65536", RegTypeMultiString},
    };
    for (const auto &c : Cases)
        EXPECT_EQ(c.Type, RegistryTypeOfFlags(ReadAddRegFlags(c.Flags))) << c.Flags;
}

TEST(ReportText, ShortcutLineFields)
{
    ShortcutLine line = ParseShortcutLine(" ,Plenarc Demo , Help ,11,,PLENARC.HLP");
    EXPECT_EQ("", line.Fields[GroupRootField]);
    EXPECT_EQ("Plenarc Demo", line.Fields[GroupFolderField]);
    EXPECT_EQ("Help", line.Fields[DescriptionField]);
    EXPECT_EQ(11, ReadFieldNumber(line.Fields[TargetRootField]));
    EXPECT_EQ("PLENARC.HLP", line.Fields[TargetFileField]);
    EXPECT_EQ("", line.Fields[ShortcutFieldCount - 1]);
    ShortcutLine longer = ParseShortcutLine(",,,,,,,,,,,,,,5,6");
    EXPECT_EQ("5,6", longer.Fields[ShortcutFieldCount - 1]);
    EXPECT_EQ("C:\\w\\Group\\Sub\\", AppendDirectoryPart("C:\\w", "\\Group\\Sub"));
}
