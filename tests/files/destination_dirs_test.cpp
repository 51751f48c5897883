#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "files/destination_dirs.h"

namespace {

// Loads INF text into a fresh install object.
void Load(CPrinterInf &inf, std::string text)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back(0);
    inf.Parse(buffer.data());
}

std::string Join(const CDestinationList &list)
{
    std::string out;
    for (const CBoundedString &entry : list)
        out += std::string(out.empty() ? "" : "|") + entry.Text;
    return out;
}

std::string Entries(CPrinterInf &inf, const char *name)
{
    CDestinationList out;
    if (!inf.FindDestinationEntries(CBoundedString(name), &out))
        return "(none)";
    return Join(out);
}

TEST(DestinationDirs, SortedAsTextMergedAndDeduplicated)
{
    CPrinterInf inf;
    Load(inf,
         "[DestinationDirs]\r\n"
         "DefaultDestDir=66000\r\n"
         "Files=2:11:10,Sub:10\r\n"
         "Twice=66000,Drv\\X:66000,drv\\x:66000\r\n"
         "Spaced= 52 : 55 \r\n"
         "Empty=\r\n"
         "Shared=55\r\n"
         "[DestinationDirs.CAB]\r\n"
         "Shared=10:55\r\n"
         "Driver.cab=11\r\n");
    EXPECT_NE(0, inf.ReadDestinationDirs());

    static const struct {
        const char *Name, *Expected;
    } cases[] = {
        {"DefaultDestDir", "66000"},
        {"files", "10|10,Sub|11|2"},
        {"Twice", "66000|66000,Drv\\X"},
        {"Spaced", "52|55"},
        {"Empty", "(none)"},
        {"Shared", "10|55"},
        {"Missing", "(none)"},
        // A cabinet is looked up without its extension, so a key written
        // with one never matches.
        {"Driver", "(none)"},
        {"Driver.cab", "11"},
        {"Files.extra.part", "10|10,Sub|11|2"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.Expected, Entries(inf, c.Name)) << c.Name;
    EXPECT_EQ(0u, inf.DestinationDirs.count(CBoundedString("Empty")));
}

TEST(DestinationDirs, WholeNameBeforeTheFirstDot)
{
    CPrinterInf inf;
    Load(inf,
         "[DestinationDirs.CAB]\r\n"
         "Pack=1\r\n"
         "Pack.Two=2\r\n");
    ASSERT_NE(0, inf.ReadDestinationDirs());
    EXPECT_EQ("2", Entries(inf, "Pack.Two"));
    EXPECT_EQ("1", Entries(inf, "Pack.Three"));
    EXPECT_EQ("1", Entries(inf, "pack"));
}

TEST(DestinationDirs, EitherSectionAloneOrNone)
{
    CPrinterInf onlyMain;
    Load(onlyMain, "[DestinationDirs]\r\nCopy=10\r\n");
    EXPECT_NE(0, onlyMain.ReadDestinationDirs());

    CPrinterInf onlyEmpty;
    Load(onlyEmpty, "[DestinationDirs]\r\nCopy=\r\n[DestinationDirs.CAB]\r\n");
    EXPECT_EQ(0, onlyEmpty.ReadDestinationDirs());

    CPrinterInf none;
    Load(none, "[Version]\r\nClass=Printer\r\n");
    none.DestinationDirs[CBoundedString("old")].push_back(CBoundedString("1"));
    EXPECT_EQ(0, none.ReadDestinationDirs());
    EXPECT_TRUE(none.DestinationDirs.empty()) << "reading starts from an empty map";
}

TEST(DestinationDirs, FindDestinationsGivesTheDirectoriesOfTheIds)
{
    CPrinterInf inf;
    Load(inf,
         "[DestinationDirs]\r\n"
         "Files=66000,sub\\dir:10:99999:11\r\n"
         "Unknown=99999\r\n");
    ASSERT_NE(0, inf.ReadDestinationDirs());
    inf.DirectoryIds[10] = CBoundedString("C:\\windows\\");
    inf.DirectoryIds[11] = CBoundedString("C:\\windows\\system32\\");
    inf.DirectoryIds[66000] = CBoundedString("C:\\spool\\drivers\\");

    CDestinationList out;
    out.push_back(CBoundedString("kept"));
    EXPECT_EQ(1, inf.FindDestinations(CBoundedString("Files.inf"), &out));
    EXPECT_EQ("kept|C:\\windows\\|C:\\windows\\system32\\|C:\\spool\\drivers\\", Join(out))
        << "text order of the entries, the subdirectory plays no part";

    out.clear();
    EXPECT_EQ(1, inf.FindDestinations(CBoundedString("Unknown"), &out));
    EXPECT_TRUE(out.empty());
    out.push_back(CBoundedString("kept"));
    EXPECT_EQ(0, inf.FindDestinations(CBoundedString("Absent"), &out));
    EXPECT_EQ("kept", Join(out));
}

}  // namespace
