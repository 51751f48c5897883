#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "registration/spooler.h"

namespace {

// The wrapper's directories against what the spooler itself answers.
void ExpectDirectoriesAsTheSpoolerGivesThem()
{
    char expected[MAX_PATH] = "", out[MAX_PATH];
    DWORD needed = 0;
    for (const char *environment : {static_cast<const char *>(NULL), "Windows 4.0", "No Such Environment"}) {
        const char *label = environment ? environment : "(own)";
        expected[0] = 0;
        BOOL known = GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), 1,
                                                reinterpret_cast<BYTE *>(expected), MAX_PATH, &needed);
        EXPECT_EQ(environment == NULL || environment[0] == 'W', known != FALSE) << label;
        std::memset(out, 'X', sizeof out);
        EXPECT_EQ(known ? 1 : 0, PrinterDriverDirectory(environment, out)) << label;
        EXPECT_STREQ(expected, out) << label;
    }
    ASSERT_TRUE(GetPrintProcessorDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(expected), MAX_PATH, &needed));
    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrintProcessorDirectory(out));
    EXPECT_STREQ(expected, out);
}

TEST(SpoolerDirectories, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }
TEST(SpoolerDirectoriesNt40, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }
TEST(SpoolerDirectoriesWin98, MatchThePlatformAndTheMachinesOwnIsTheNineXOne)
{
    ExpectDirectoriesAsTheSpoolerGivesThem();
    char own[MAX_PATH], ninex[MAX_PATH];
    ASSERT_EQ(1, PrinterDriverDirectory(NULL, own));
    ASSERT_EQ(1, PrinterDriverDirectory(Windows9xEnvironment, ninex));
    EXPECT_STREQ(ninex, own);
}

}  // namespace
