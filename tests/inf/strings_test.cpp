#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "inf/inf_file.h"
#include "test_support.h"

namespace {

const char StringsInf[] =
    "[Strings.0409]\r\nBoth=\"from 0409\"\r\n"
    "[Strings]\r\nBoth=from plain\r\nName=\"Acme Laser\"\r\nEmpty=\r\nToken=%Name%\r\nSecName=Sec\r\n"
    "[Strings.0007]\r\nGerman=Deutsch\r\nBoth=\"from 0007\"\r\n"
    "[Strings.040C]\r\nFrench=France\r\n"
    "[Strings.000c]\r\nFrench=Generic French\r\n"
    "[Sec]\r\n\"Acme Laser\"=quoted key\r\nBare=bare\r\nEmptyVal=\r\nQuoted=\"q\"\r\nTokenValue=%Name%\r\n"
    "\"Odd\"=odd\r\nClosing\"=closing\r\n\"Half\"=half\r\n";

// Runs a block under a thread locale and puts the old one back.
class CThreadLocale {
public:
    explicit CThreadLocale(LCID locale) : Saved(GetThreadLocale()) { EXPECT_TRUE(SetThreadLocale(locale)); }
    ~CThreadLocale() { SetThreadLocale(Saved); }

private:
    LCID Saved;
};

class Strings : public ::testing::Test {
protected:
    void SetUp() override
    {
        Path = ScratchDirectory() + "strings.inf";
        WriteText(Path, StringsInf);
        ASSERT_EQ(1, Inf.Load(Path.c_str()));
    }
    std::string Path;
    CInfFile Inf;
    CThreadLocale English{0x0409};
};

TEST_F(Strings, ExpandTokenFromTheStoreAndThroughTheProfileCalls)
{
    const struct {
        const char *Text, *Out;
        int Store, Profile;  // results; the profile call counts the characters copied
    } cases[] = {
        {"%Name%", "Acme Laser", 1, 10},
        {"%Both%", "from 0409", 1, 9},        // Strings.0409 before Strings
        {"%%Name%%", "Acme Laser", 1, 10},
        {"%Empty%", "%Empty%", 1, 0},          // the store finds it, the profile call does not
        {"%Token%", "%Name%", 1, 6},           // resolved once only
        {"%Missing%", "%Missing%", 0, 0},
        {"%", "%", 0, 0},
        {"100%", "100%", 0, 0},
        {"\"%Name%\"", "\"%Name%\"", 0, 0},
    };
    CInfFile unloaded;  // read by the system, not from a store
    for (const auto &c : cases) {
        char out[260] = "junk", viaProfile[260] = "junk";
        EXPECT_EQ(c.Store, Inf.ExpandToken(c.Text, out, nullptr) != 0) << c.Text;
        EXPECT_STREQ(c.Out, out) << c.Text;
        EXPECT_EQ(c.Profile, unloaded.ExpandToken(c.Text, viaProfile, Path.c_str())) << c.Text;
        EXPECT_STREQ(c.Out, viaProfile) << c.Text;
    }
    char text[260] = "%Name%";
    EXPECT_NE(0, Inf.ExpandToken(text, text, nullptr));
    EXPECT_STREQ("Acme Laser", text) << "in place";
    EXPECT_EQ(0, Inf.ExpandToken(nullptr, text, nullptr));
    EXPECT_EQ(0, Inf.ExpandToken("%Name%", nullptr, nullptr));
    EXPECT_STREQ("Acme Laser", text);
}

TEST_F(Strings, ExpandTokenFollowsTheThreadLocale)
{
    const struct {
        LCID Locale;
        const char *Text, *Out;
    } cases[] = {
        {0x0407, "%German%", "Deutsch"},  // only the primary-language section, Strings.0007, has it
        {0x0407, "%Both%", "from 0007"},
        {0x040c, "%French%", "France"},  // [Strings.040C] is found as Strings.040c
        {0x0c0c, "%French%", "Generic French"},
        {0x0c0c, "%Both%", "from plain"},
        {0x0409, "%German%", "%German%"},
    };
    for (const auto &c : cases) {
        CThreadLocale locale(c.Locale);
        char out[260] = "";
        Inf.ExpandToken(c.Text, out, nullptr);
        EXPECT_STREQ(c.Out, out) << std::hex << c.Locale << " " << c.Text;
    }
}

TEST_F(Strings, GetValue)
{
    const struct {
        const char *Section, *Key, *Default, *Out;
        int Result;
    } cases[] = {
        {"sec", "BARE", nullptr, "bare", 1},
        {"Sec", "Acme Laser", "", "quoted key", 1},  // unquoted key finds the quoted line
        {"Sec", "\"Bare\"", "", "bare", 1},          // and the reverse
        {"Sec", "\"Half", "", "half", 1},            // a closing quote is added
        {"Sec", "Odd\"", "", "keep", 0},             // no second form for this one
        {"Sec", "Closing\"", "", "closing", 1},
        {"Sec", "Quoted", "", "\"q\"", 1},  // a value keeps its quotes
        {"Sec", "TokenValue", "", "Acme Laser", 1},
        {"%SecName%", "Bare", "", "bare", 1},
        {"Sec", "EmptyVal", "", "keep", 1},  // found, and out untouched
        {"Sec", "EmptyVal", "dflt", "dflt", 1},
        {"Sec", "Missing", "%Name%", "Acme Laser", 0},  // the default is expanded too
        {"Nowhere", "Bare", nullptr, "keep", 0},
        {"", "Bare", "dflt", "keep", 0},
        {"Sec", nullptr, "dflt", "keep", 0},
        {"Sec", "\"", "dflt", "dflt", 0},
    };
    for (const auto &c : cases) {
        char out[260] = "keep";
        std::string label = std::string(c.Section) + "/" + (c.Key ? c.Key : "(null)");
        EXPECT_EQ(c.Result, Inf.GetValue(c.Section, c.Key, out, c.Default)) << label;
        EXPECT_STREQ(c.Out, out) << label;
    }
}

}  // namespace
