#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>

#include "registration/spooler.h"

namespace {

// What the spooler itself reports, asked without our wrapper in between.
std::string DriverDirectoryFromSpooler(const char *environment)
{
    char buffer[MAX_PATH] = "";
    DWORD needed = 0;
    if (!GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), 1,
                                    reinterpret_cast<BYTE *>(buffer), sizeof buffer, &needed))
        return "";
    return buffer;
}

std::string ProcessorDirectoryFromSpooler()
{
    char buffer[MAX_PATH] = "";
    DWORD needed = 0;
    if (!GetPrintProcessorDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(buffer),
                                     sizeof buffer, &needed))
        return "";
    return buffer;
}

std::string Lower(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

void ExpectDirectoriesAsTheSpoolerGivesThem()
{
    char out[MAX_PATH];
    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrinterDriverDirectory(NULL, out));
    EXPECT_STREQ(DriverDirectoryFromSpooler(NULL).c_str(), out);
    EXPECT_NE(0, out[0]);

    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrinterDriverDirectory(Windows9xEnvironment, out));
    EXPECT_STREQ(DriverDirectoryFromSpooler("Windows 4.0").c_str(), out);
    // The 9x environment keeps its drivers in their own folder everywhere.
    std::string ninex = Lower(out);
    EXPECT_EQ("win40", ninex.substr(ninex.size() - 5)) << out;

    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(1, PrintProcessorDirectory(out));
    EXPECT_STREQ(ProcessorDirectoryFromSpooler().c_str(), out);
    EXPECT_NE(0, out[0]);
}

TEST(SpoolerDirectories, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }

TEST(SpoolerDirectoriesWin98, MatchThePlatform)
{
    ExpectDirectoriesAsTheSpoolerGivesThem();
    // On the 9x family the machine's own environment is "Windows 4.0".
    char own[MAX_PATH], ninex[MAX_PATH];
    ASSERT_EQ(1, PrinterDriverDirectory(NULL, own));
    ASSERT_EQ(1, PrinterDriverDirectory(Windows9xEnvironment, ninex));
    EXPECT_STREQ(ninex, own);
}

TEST(SpoolerDirectoriesNt40, MatchThePlatform) { ExpectDirectoriesAsTheSpoolerGivesThem(); }

TEST(SpoolerDirectories, UnknownEnvironmentLeavesTheBufferEmpty)
{
    char out[MAX_PATH];
    std::memset(out, 'X', sizeof out);
    EXPECT_EQ(0, PrinterDriverDirectory("No Such Environment", out));
    EXPECT_STREQ("", out);
}

}  // namespace
