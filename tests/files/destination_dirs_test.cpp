#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "files/destination_dirs.h"

namespace {

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

TEST(DestinationDirs, BothSectionsSortedAsTextAndLookedUpByNameThenStem)
{
    CPrinterInf inf;
    inf.DestinationDirs[CBoundedString("stale")].push_back(CBoundedString("1"));
    Load(inf,
         "[DestinationDirs]\r\nDefaultDestDir=66000\r\nFiles=2:11:10,Sub:10\r\n"
         "Twice=66000,Drv\\X:66000,drv\\x:66000\r\nSpaced= 52 : 55 \r\nEmpty=\r\nShared=55\r\n"
         "[DestinationDirs.CAB]\r\nShared=10:55\r\nDriver.cab=11\r\nPack=1\r\nPack.Two=2\r\n");
    EXPECT_NE(0, inf.ReadDestinationDirs());
    static const struct {
        const char *Name, *Expected;
    } cases[] = {
        {"files", "10|10,Sub|11|2"}, {"Twice", "66000|66000,Drv\\X"}, {"Spaced", "52|55"},
        {"Empty", "(none)"}, {"Shared", "10|55"}, {"Missing", "(none)"}, {"stale", "(none)"},
        // A cabinet is looked up without its extension, so a key written with one never matches.
        {"Driver", "(none)"}, {"Driver.cab", "11"},
        {"Files.extra.part", "10|10,Sub|11|2"}, {"Pack.Two", "2"}, {"Pack.Three", "1"},
    };
    for (const auto &c : cases) {
        CDestinationList out;
        EXPECT_EQ(c.Expected, inf.FindDestinationEntries(CBoundedString(c.Name), &out) ? Join(out) : "(none)")
            << c.Name;
    }

    CPrinterInf empty;
    Load(empty, "[DestinationDirs]\r\nCopy=\r\n[DestinationDirs.CAB]\r\n");
    EXPECT_EQ(0, empty.ReadDestinationDirs());
}

TEST(DestinationDirs, FindDestinationsGivesTheDirectoriesOfTheIds)
{
    CPrinterInf inf;
    Load(inf, "[DestinationDirs]\r\nFiles=66000,sub\\dir:10:99999:11\r\nUnknown=99999\r\n");
    ASSERT_NE(0, inf.ReadDestinationDirs());
    inf.DirectoryIds[10] = CBoundedString("C:\\windows\\");
    inf.DirectoryIds[11] = CBoundedString("C:\\windows\\system32\\");
    inf.DirectoryIds[66000] = CBoundedString("C:\\spool\\drivers\\");

    CDestinationList out(1, CBoundedString("kept"));
    EXPECT_EQ(1, inf.FindDestinations(CBoundedString("Files.inf"), &out));
    EXPECT_EQ("kept|C:\\windows\\|C:\\windows\\system32\\|C:\\spool\\drivers\\", Join(out))
        << "text order of the entries, the subdirectory plays no part";
    out.clear();
    EXPECT_EQ(1, inf.FindDestinations(CBoundedString("Unknown"), &out));
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(0, inf.FindDestinations(CBoundedString("Absent"), &out));
}

}  // namespace
