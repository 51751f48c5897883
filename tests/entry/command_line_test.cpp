#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "entry/command_line.h"

namespace {

// Groups written as "key|value|value" and joined by "; ", values in brackets
// so that empty ones show.
std::string Describe(const CCommandLine &line)
{
    std::string text;
    for (const CCommandGroup &group : line.Groups) {
        if (!text.empty())
            text += "; ";
        bool first = true;
        for (const CBoundedString &word : group) {
            text += first ? std::string(word.Text) : "|[" + std::string(word.Text) + "]";
            first = false;
        }
    }
    return text;
}

struct GrammarCase {
    const char *Input;
    int Result;
    const char *Groups;
};

const GrammarCase GrammarCases[] = {
    {"/INF a.inf /MFG Acme /DRV \"Acme Laser 2000\" /NAME AL2K", 1,
     "INF|[a.inf]; MFG|[Acme]; DRV|[\"Acme Laser 2000\"]; NAME|[AL2K]"},
    {"/DRV Acme Laser", 1, "DRV|[Acme]|[Laser]"},
    {"help", 1, "help"},
    {"/?", 1, "?"},
    {"/MFG   ", 1, "MFG"},
    {"/INF e:/drv/a.inf", 1, "INF|[e:]; drv; a.inf"},
    {"/INF \"e:/drv/a.inf\"", 1, "INF|[\"e:/drv/a.inf\"]"},
    {"/A x  y", 1, "A|[x]|[]|[y]"},
    {"C:\\tools\\setup.exe /INF a.inf", 1, "C:\\tools\\setup.exe; INF|[a.inf]"},
    {"/K v   /L", 1, "K|[v]; L"},
    {"prog.exe x /K v", 1, "prog.exe|[x]; K|[v]"},
    {"/K \"open ended /X y", 1, "K|[\"open ended /X y]"},
    {"/K \"a b\"c d", 1, "K|[\"a b\"c]|[d]"},
    {"//  /", 0, ""},
    {"   ", 0, ""},
    {"/K v /K w", 1, "K|[v]; K|[w]"},
};

TEST(CommandLineGrammar, GroupsKeysAndValues)
{
    for (const GrammarCase &c : GrammarCases) {
        CCommandLine line;
        EXPECT_EQ(c.Result, line.Parse(c.Input)) << c.Input;
        EXPECT_EQ(c.Groups, Describe(line)) << c.Input;
        EXPECT_STREQ(c.Input, line.Text) << "Text keeps the text in use";
    }
    CCommandLine again("/A 1 /B 2");
    EXPECT_EQ(1, again.Parse("/C"));
    EXPECT_EQ("C", Describe(again)) << "Parse starts afresh";
}

TEST(CommandLineGrammar, EmptyTextTakesTheProcessCommandLine)
{
    const char *own = ProcessCommandLine();
    CCommandLine expected;
    expected.Parse(own);
    for (const char *text : {static_cast<const char *>(nullptr), ""}) {
        CCommandLine line;
        EXPECT_EQ(expected.Groups.empty() ? 0 : 1, line.Parse(text));
        EXPECT_STREQ(CBoundedString(own).Text, line.Text);
        EXPECT_EQ(Describe(expected), Describe(line));
        ASSERT_FALSE(line.Groups.empty()) << "the program's own path is a key";
    }
}

TEST(CommandLineFind, CountsTheValuesOfTheFirstGroup)
{
    CCommandLine line("/inf a.inf /MFG /DRV Acme Laser /drv other /? /HELP");
    const struct {
        const char *Key;
        int Count;
    } cases[] = {{"inf", 1}, {"Mfg", 0}, {"DRV", 2}, {"?", 0}, {"help", 0}, {"NAME", -1}, {"", -1}, {"/INF", -1}};
    for (const auto &c : cases)
        EXPECT_EQ(c.Count, line.Find(c.Key)) << c.Key;
}

struct ValuesCase {
    const char *Key;
    char Separator;
    unsigned Size;
    int Result;
    const char *Out;  // as it reads with the separator shown; null: out untouched
    unsigned Length;
};

const char ValuesLine[] = "/K a bc /E /K d /Q \"x y\" /W  v /Z  ";

const ValuesCase ValuesCases[] = {
    {"k", ',', 260, 1, "a,bc,d", 8},
    {"K", 0, 260, 1, "a\0bc\0d", 8},
    {"K", ' ', 9, 1, "a bc d", 8},
    {"K", ' ', 8, 0, nullptr, 8},
    {"E", ' ', 260, 0, nullptr, 0},
    {"Q", ' ', 260, 1, "\"x y\"", 7},
    {"W", ' ', 260, 1, " v", 4},
    {"Z", ' ', 260, 0, nullptr, 0},
    {"missing", ' ', 260, 0, nullptr, 0},
    {"", ' ', 260, 0, nullptr, 12345},  // no key: the length stays too
    {nullptr, ' ', 260, 0, nullptr, 12345},
};

TEST(CommandLineGetValues, JoinsTheValuesOfEveryGroupWithTheKey)
{
    CCommandLine line(ValuesLine);
    for (const ValuesCase &c : ValuesCases) {
        char out[260];
        std::memset(out, '#', sizeof out);
        unsigned length = 12345;
        EXPECT_EQ(c.Result, line.GetValues(c.Key, out, c.Size, &length, c.Separator)) << c.Key;
        if (!c.Key || !*c.Key) {
            EXPECT_EQ(12345u, length);
            continue;
        }
        EXPECT_EQ(c.Length, length) << c.Key;
        if (c.Out) {
            EXPECT_EQ(std::string(c.Out, c.Length - 2), std::string(out, c.Length - 2)) << c.Key;
            EXPECT_EQ(0, out[c.Length - 2]) << c.Key;
            EXPECT_EQ(0, out[c.Length - 1]) << c.Key << ": a second NUL ends the list";
            EXPECT_EQ('#', out[c.Length]) << c.Key << ": no more than the total is copied";
        } else {
            EXPECT_EQ('#', out[0]) << c.Key << ": out stays as it was";
        }
    }
    unsigned length = 0;
    EXPECT_EQ(0, line.GetValues("K", nullptr, 260, &length, ' '));
    EXPECT_EQ(8u, length) << "the length is given without out";
    // Sixty-one characters fit sixty-four bytes with the two NULs, sixty-two do not.
    for (size_t n : {61u, 62u}) {
        CCommandLine one(("/PATHNAME " + std::string(n, 'p')).c_str());
        char out[64] = {0};
        EXPECT_EQ(n == 61 ? 1 : 0, one.GetValues("PATHNAME", out, sizeof out, nullptr, ' ')) << n;
        EXPECT_EQ(n == 61 ? n : 0u, std::strlen(out));
    }
}

}  // namespace
