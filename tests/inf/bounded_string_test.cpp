#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "inf/bounded_string.h"

namespace {

struct StripCase {
    const char *Input;
    char C;
    const char *Char, *Last, *First, *One;
};

const StripCase StripCases[] = {
    // input       c     StripChar   StripLast   StripFirst  StripOne
    {"",           ' ',  "",         "",         "",         ""},
    {"    ",       ' ',  "",         "   ",      "   ",      "  "},
    {"%%name%",    '%',  "name",     "%%name",   "%name%",   "%name"},
    {"\"",         '"',  "",         "",         "\"",       ""},
    {"a b",        ' ',  "a b",      "a b",      "a b",      "a b"},
    {" \ta\t ",    ' ',  "\ta\t",    " \ta\t",   "\ta\t ",   "\ta\t"},
};

TEST(BoundedStringStrip, EachFunctionOnEachInput)
{
    char *(*const functions[])(char *, char) = {StripChar, StripLast, StripFirst, StripOne};
    for (const StripCase &c : StripCases) {
        const char *expected[] = {c.Char, c.Last, c.First, c.One};
        for (int f = 0; f < 4; ++f) {
            char text[64];
            std::strcpy(text, c.Input);
            EXPECT_STREQ(expected[f], functions[f](text, c.C)) << "function " << f << " [" << c.Input << "]";
        }
    }
    for (auto function : functions)
        EXPECT_EQ(nullptr, function(nullptr, ' '));
}

struct TokenCase {
    const char *Input;
    char Delimiter;
    bool Quoted;
    const char *Left;  // what stays in the text
    const char *Rest;  // what comes back; null for none
};

const TokenCase TokenCases[] = {
    {"a,b,c",            ',', false, "a",          "b,c"},
    {"abc,",             ',', false, "abc",        ""},
    {"abc",              ',', false, "abc",        nullptr},
    {"",                 ',', false, "",           nullptr},
    {"\"a b\" c",        ' ', true,  "\"a b\"",    "c"},
    {"\"a b\" c",        ' ', false, "\"a",        "b\" c"},
    {"/INF \"x/y\" /MFG", '/', true, "",           "INF \"x/y\" /MFG"},
    {"INF \"x/y\" /MFG", '/', true,  "INF \"x/y\" ", "MFG"},
    {"\"open b",         ' ', true,  "\"open b",   nullptr},
    {"a  b",             ' ', true,  "a",          " b"},
};

TEST(BoundedStringTokens, CutsAtTheFirstDelimiter)
{
    for (const TokenCase &c : TokenCases) {
        char text[64];
        std::strcpy(text, c.Input);
        char *rest = c.Quoted ? NextQuotedToken(text, c.Delimiter) : NextToken(text, c.Delimiter);
        EXPECT_STREQ(c.Left, text) << "[" << c.Input << "]";
        EXPECT_STREQ(c.Rest, rest) << "[" << c.Input << "]";
    }
    // A list of NUL-terminated strings ends at the empty one.
    char list[] = "a\0bc\0\0";
    char *element = NextToken(list, 0);
    EXPECT_STREQ("bc", element);
    EXPECT_EQ(nullptr, NextToken(element, 0));
    EXPECT_EQ(nullptr, NextToken(nullptr, ','));
}

TEST(BoundedString, NeverOverrunsWhateverArrives)
{
    std::string longText(1000, 'x');
    CBoundedString s("ab");
    s.Append(longText.c_str()).Append("more");
    EXPECT_EQ(259u, std::strlen(s.Text));
    EXPECT_EQ('a', s.Text[0]);
    CBoundedString own("abc");
    own.Append(own.Text);
    EXPECT_STREQ("abcabc", own.Text);
    EXPECT_TRUE(CBoundedString(nullptr).IsEmpty());
}

TEST(BoundedString, CompareFoldsOnlyAsciiLettersAndIsUnsigned)
{
    const struct {
        const char *Left, *Right;
        int Sign;
    } cases[] = {
        {"Printer", "PRINTER", 0}, {"abc", "abd", -1}, {"abc", "ab", 1},
        {"A", "_", 1},            // letters fold to lower case, after '_'
        {"\xc4", "\xe4", -1},     // no locale folding
        {"\xe4", "z", 1},         // bytes compare unsigned
        {nullptr, "", 0},
    };
    CBoundedString s;
    for (const auto &c : cases) {
        int result = s.Compare(c.Left, c.Right);
        EXPECT_EQ(c.Sign, (result > 0) - (result < 0)) << (c.Left ? c.Left : "(null)") << " " << c.Right;
    }
    std::map<CBoundedString, int, CBoundedStringLess> map;
    map[CBoundedString("Version")] = 1;
    map[CBoundedString("VERSION")] = 2;
    ASSERT_EQ(1u, map.size());
    EXPECT_STREQ("Version", map.begin()->first.Text);
}

}  // namespace
