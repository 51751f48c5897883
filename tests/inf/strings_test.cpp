#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "inf/inf_file.h"
#include "inf/strings.h"
#include "test_support.h"

namespace {

const char StringsInf[] =
    "[Strings.0409]\r\n"
    "Both=\"from 0409\"\r\n"
    "[Strings]\r\n"
    "Both=from plain\r\n"
    "Name=\"Acme Laser\"\r\n"
    "Empty=\r\n"
    "Token=%Name%\r\n"
    "SecName=Sec\r\n"
    "KeyName=Bare\r\n"
    "[Strings.0007]\r\n"
    "German=Deutsch\r\n"
    "Both=\"from 0007\"\r\n"
    "[Strings.040C]\r\n"
    "French=France\r\n"
    "[Strings.000c]\r\n"
    "French=Generic French\r\n"
    "[Sec]\r\n"
    "\"Acme Laser\"=quoted key\r\n"
    "Bare=bare\r\n"
    "EmptyVal=\r\n"
    "Quoted=\"q\"\r\n"
    "TokenValue=%Name%\r\n"
    "Percent=%1%\\file\r\n"
    "\"Odd\"=odd\r\n"
    "Closing\"=closing\r\n"
    "\"Half\"=half\r\n";

// Runs a block under a thread locale and puts the old one back.
class CThreadLocale {
public:
    explicit CThreadLocale(LCID locale) : Saved(GetThreadLocale()) { Ok = SetThreadLocale(locale); }
    ~CThreadLocale() { SetThreadLocale(Saved); }
    BOOL Ok;

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
};

TEST(StringsSections, FormedFromTheLocaleInLowerCaseHex)
{
    const struct {
        unsigned long Locale;
        const char *First, *Second;
    } cases[] = {
        {0x0409, "Strings.0409", "Strings.0009"},
        {0x0c0c, "Strings.0c0c", "Strings.000c"},
        {0x0407, "Strings.0407", "Strings.0007"},
        {0x0007, "Strings.0007", "Strings.0007"},
        {0x10407, "Strings.10407", "Strings.0007"},  // a sort id widens the first name
    };
    for (const auto &c : cases) {
        CBoundedString names[StringsSectionCount];
        FormStringsSections(c.Locale, names);
        EXPECT_STREQ(c.First, names[0].Text) << std::hex << c.Locale;
        EXPECT_STREQ(c.Second, names[1].Text) << std::hex << c.Locale;
        EXPECT_STREQ("Strings", names[2].Text);
    }
}

TEST_F(Strings, ExpandTokenFromTheStore)
{
    CThreadLocale english(0x0409);
    ASSERT_TRUE(english.Ok);
    const struct {
        const char *Text, *Out;
        bool Resolved;
    } cases[] = {
        {"%Name%", "Acme Laser", true},
        {"%Both%", "from 0409", true},  // Strings.0409 before Strings
        {"%%Name%%", "Acme Laser", true},
        {"%Empty%", "%Empty%", true},  // found, with the token as its text
        {"%Token%", "%Name%", true},    // resolved once only
        {"%Missing%", "%Missing%", false},
        {"%", "%", false},
        {"%%", "%%", false},
        {"100%", "100%", false},
        {"%d", "%d", false},
        {"%1%\\file", "%1%\\file", false},
        {"\"%Name%\"", "\"%Name%\"", false},
        {"plain", "plain", false},
    };
    for (const auto &c : cases) {
        char out[260] = "junk";
        int result = Inf.ExpandToken(c.Text, out, nullptr);
        EXPECT_EQ(c.Resolved, result != 0) << c.Text;
        EXPECT_STREQ(c.Out, out) << c.Text;
    }

    char out[260] = "keep";
    EXPECT_EQ(0, Inf.ExpandToken("", out, nullptr));
    EXPECT_EQ(0, Inf.ExpandToken(nullptr, out, nullptr));
    EXPECT_STREQ("keep", out);
    EXPECT_EQ(0, Inf.ExpandToken("%Name%", nullptr, nullptr));
}

TEST_F(Strings, ExpandTokenInPlace)
{
    CThreadLocale english(0x0409);
    char text[260] = "%Name%";
    EXPECT_NE(0, Inf.ExpandToken(text, text, nullptr));
    EXPECT_STREQ("Acme Laser", text);
}

TEST_F(Strings, ExpandTokenFollowsTheThreadLocale)
{
    const struct {
        LCID Locale;
        const char *Text, *Out;
    } cases[] = {
        {0x0407, "%German%", "Deutsch"},  // only the primary-language section has it
        {0x0407, "%Both%", "from 0007"},
        {0x040c, "%French%", "France"},  // [Strings.040C] is found as Strings.040c
        {0x0c0c, "%French%", "Generic French"},
        {0x0c0c, "%Both%", "from plain"},
        {0x0409, "%German%", "%German%"},
    };
    for (const auto &c : cases) {
        CThreadLocale locale(c.Locale);
        ASSERT_TRUE(locale.Ok) << std::hex << c.Locale;
        ASSERT_EQ(c.Locale, GetThreadLocale());
        char out[260] = "";
        Inf.ExpandToken(c.Text, out, nullptr);
        EXPECT_STREQ(c.Out, out) << std::hex << c.Locale << " " << c.Text;
    }
}

TEST_F(Strings, ExpandTokenThroughTheProfileCalls)
{
    CThreadLocale english(0x0409);
    CInfFile unloaded;  // the file is read by the system, not from a store
    const struct {
        const char *Text, *Out;
        int Result;
    } cases[] = {
        {"%Name%", "Acme Laser", 10},  // the number of characters copied
        {"%Both%", "from 0409", 9},
        {"%Empty%", "%Empty%", 0},  // an empty entry counts as absent
        {"%Missing%", "%Missing%", 0},
        {"%", "%", 0},
        {"text", "text", 0},
    };
    for (const auto &c : cases) {
        char out[260] = "junk";
        EXPECT_EQ(c.Result, unloaded.ExpandToken(c.Text, out, Path.c_str())) << c.Text;
        EXPECT_STREQ(c.Out, out) << c.Text;
    }
    char out[260] = "";
    EXPECT_EQ(0, unloaded.ExpandToken("%Name%", out, (ScratchDirectory() + "absent.inf").c_str()));
    EXPECT_STREQ("%Name%", out);
}

TEST_F(Strings, GetValue)
{
    CThreadLocale english(0x0409);
    const struct {
        const char *Section, *Key, *Default, *Out;
        int Result;
    } cases[] = {
        {"Sec", "Bare", "", "bare", 1},
        {"sec", "BARE", nullptr, "bare", 1},
        {"Sec", "Acme Laser", "", "quoted key", 1},  // unquoted key finds the quoted line
        {"Sec", "\"Bare\"", "", "bare", 1},          // and the reverse
        {"Sec", "\"Half", "", "half", 1},            // a closing quote is added
        {"Sec", "Odd\"", "", "keep", 0},             // no second form for this one
        {"Sec", "Closing\"", "", "closing", 1},
        {"Sec", "Quoted", "", "\"q\"", 1},  // a value keeps its quotes
        {"Sec", "TokenValue", "", "Acme Laser", 1},
        {"Sec", "Percent", "", "%1%\\file", 1},
        {"%SecName%", "%KeyName%", "", "bare", 1},
        {"Sec", "EmptyVal", "", "keep", 1},  // found, and out untouched
        {"Sec", "EmptyVal", "dflt", "dflt", 1},
        {"Sec", "Missing", "dflt", "dflt", 0},
        {"Sec", "Missing", "%Name%", "Acme Laser", 0},  // the default is expanded too
        {"Sec", "Missing", "", "keep", 0},
        {"Nowhere", "Bare", nullptr, "keep", 0},
        {"", "Bare", "dflt", "keep", 0},
        {"Sec", "", "dflt", "keep", 0},
        {nullptr, "Bare", "dflt", "keep", 0},
        {"Sec", nullptr, "dflt", "keep", 0},
        {"Sec", "\"", "dflt", "dflt", 0},
    };
    for (const auto &c : cases) {
        char out[260] = "keep";
        EXPECT_EQ(c.Result, Inf.GetValue(c.Section, c.Key, out, c.Default))
            << (c.Section ? c.Section : "(null)") << "/" << (c.Key ? c.Key : "(null)");
        EXPECT_STREQ(c.Out, out) << (c.Section ? c.Section : "(null)") << "/" << (c.Key ? c.Key : "(null)");
    }
    EXPECT_EQ(0, Inf.GetValue("Sec", "Bare", nullptr, ""));
}

TEST_F(Strings, NamesAndValuesOfAnyLength)
{
    CThreadLocale english(0x0409);
    std::string longName(5000, 'k');
    std::string token = "%" + std::string(400, 'n') + "%";
    char out[260] = "keep";
    EXPECT_EQ(0, Inf.GetValue(longName.c_str(), longName.c_str(), out, longName.c_str()));
    EXPECT_EQ(259u, strlen(out));
    EXPECT_EQ(0, Inf.ExpandToken(token.c_str(), out, nullptr));
    EXPECT_EQ(259u, strlen(out));
    EXPECT_EQ(0, Inf.ExpandToken(token.c_str(), out, Path.c_str()));
    EXPECT_EQ(259u, strlen(out));

    // A value that fills the whole buffer comes back whole and terminated.
    std::string path = ScratchDirectory() + "long.inf";
    std::string value(300, 'v');
    WriteText(path, "[Strings]\r\nLong=" + value + "\r\n[S]\r\nk=%Long%\r\n");
    CInfFile inf;
    ASSERT_EQ(1, inf.Load(path.c_str()));
    EXPECT_EQ(1, inf.GetValue("S", "k", out, ""));
    EXPECT_EQ(std::string(259, 'v'), out);
    CInfFile unloaded;
    EXPECT_EQ(259, unloaded.ExpandToken("%Long%", out, path.c_str()));
    EXPECT_EQ(std::string(259, 'v'), out);
}

TEST(StringsWide, ASixteenBitFileIsEmptyToTheStoreButReadByTheProfileCalls)
{
    std::string path = ScratchDirectory() + "wide.inf";
    const char narrow[] = "[Strings]\r\nName=Wide\r\n[S]\r\nk=%Name%\r\n";
    std::string bytes("\xff\xfe", 2);
    for (const char *p = narrow; *p; ++p)
        bytes += std::string(1, *p) + '\0';
    WriteBytes(path, bytes.data(), bytes.size());
    CInfFile inf;
    inf.Load(path.c_str());
    char out[260] = "keep";
    EXPECT_EQ(0, inf.GetValue("S", "k", out, ""));
    EXPECT_STREQ("keep", out);

    // The system's profile reader does know 16-bit text.
    char resolved[260] = "";
    EXPECT_EQ(4, inf.ExpandToken("%Name%", resolved, path.c_str()));
    EXPECT_STREQ("Wide", resolved);
}

// Registered a second time with LC_ALL=de_DE.UTF-8, where Wine starts the
// thread in locale 0x0407; skipped under any other locale.
TEST(StringsProcessLocale, GermanProcessReadsThePrimaryLanguageSection)
{
    const char *lang = getenv("LC_ALL");
    if (!lang || std::string(lang).compare(0, 5, "de_DE") != 0)
        GTEST_SKIP() << "LC_ALL=" << (lang ? lang : "");
    ASSERT_EQ(0x0407u, GetThreadLocale());
    std::string path = ScratchDirectory() + "de.inf";
    WriteText(path, StringsInf);
    CInfFile inf;
    ASSERT_EQ(1, inf.Load(path.c_str()));
    char out[260] = "";
    EXPECT_NE(0, inf.ExpandToken("%German%", out, nullptr));
    EXPECT_STREQ("Deutsch", out);
    EXPECT_NE(0, inf.ExpandToken("%Both%", out, path.c_str()));
    EXPECT_STREQ("from 0007", out);
}

}  // namespace
