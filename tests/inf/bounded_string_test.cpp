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
    {"\"a\"",      '"',  "a",        "\"a",      "a\"",      "a"},
    {"a b",        ' ',  "a b",      "a b",      "a b",      "a b"},
    {" \ta\t ",    ' ',  "\ta\t",    " \ta\t",   "\ta\t ",   "\ta\t"},
    {"xx",         'x',  "",         "x",        "x",        "x"},
};

TEST(BoundedStringStrip, EachFunctionOnEachInput)
{
    for (const StripCase &c : StripCases) {
        char text[64];
        std::strcpy(text, c.Input);
        EXPECT_STREQ(c.Char, StripChar(text, c.C)) << "StripChar [" << c.Input << "]";
        std::strcpy(text, c.Input);
        EXPECT_STREQ(c.Last, StripLast(text, c.C)) << "StripLast [" << c.Input << "]";
        std::strcpy(text, c.Input);
        EXPECT_STREQ(c.First, StripFirst(text, c.C)) << "StripFirst [" << c.Input << "]";
        std::strcpy(text, c.Input);
        EXPECT_STREQ(c.One, StripOne(text, c.C)) << "StripOne [" << c.Input << "]";
    }
}

TEST(BoundedStringStrip, NullIsLeftAlone)
{
    EXPECT_EQ(nullptr, StripChar(nullptr, ' '));
    EXPECT_EQ(nullptr, StripLast(nullptr, ' '));
    EXPECT_EQ(nullptr, StripFirst(nullptr, ' '));
    EXPECT_EQ(nullptr, StripOne(nullptr, ' '));
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
    {",x",               ',', false, "",           "x"},
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
        if (c.Rest)
            EXPECT_STREQ(c.Rest, rest) << "[" << c.Input << "]";
        else
            EXPECT_EQ(nullptr, rest) << "[" << c.Input << "]";
    }
}

TEST(BoundedStringTokens, WalksAListOfNulTerminatedStrings)
{
    char list[] = "a\0bc\0\0";
    char *element = list;
    element = NextToken(element, 0);
    ASSERT_NE(nullptr, element);
    EXPECT_STREQ("bc", element);
    EXPECT_EQ(nullptr, NextToken(element, 0));
    char empty[] = "\0";
    EXPECT_EQ(nullptr, NextToken(empty, 0));
    EXPECT_EQ(nullptr, NextToken(nullptr, ','));
}

TEST(BoundedStringTokens, CommaWalkVisitsEveryElementWithItsBlanks)
{
    char list[] = " a , b,,c ";
    std::string seen;
    for (char *element = list; element;) {
        char *next = NextToken(element, ',');
        seen += "[" + std::string(element) + "]";
        element = next;
    }
    EXPECT_EQ("[ a ][ b][][c ]", seen);
}

TEST(BoundedString, StartsZeroedAndCaseInsensitive)
{
    CBoundedString s;
    EXPECT_EQ(0, s.CaseSensitive);
    for (char c : s.Text)
        ASSERT_EQ(0, c);
    CBoundedString fromNull(nullptr);
    EXPECT_TRUE(fromNull.IsEmpty());
}

TEST(BoundedString, AppendStopsAtTheCapacity)
{
    std::string longText(1000, 'x');
    CBoundedString s("ab");
    s.Append(longText.c_str());
    EXPECT_EQ(259u, std::strlen(s.Text));
    EXPECT_EQ('a', s.Text[0]);
    s.Append("more");
    EXPECT_EQ(259u, std::strlen(s.Text));

    CBoundedString full(longText.c_str());
    EXPECT_EQ(259u, full.Length());
    CBoundedString copy;
    copy.Assign(full);
    EXPECT_STREQ(full.Text, copy.Text);
}

TEST(BoundedString, AppendOfItsOwnText)
{
    CBoundedString s("abc");
    s.Append(s.Text);
    EXPECT_STREQ("abcabc", s.Text);
}

TEST(BoundedString, AssignKeepsTheTargetsCaseFlag)
{
    CBoundedString exact("x");
    exact.CaseSensitive = 1;
    CBoundedString source("Hello");
    exact.Assign(source);
    EXPECT_STREQ("Hello", exact.Text);
    EXPECT_EQ(1, exact.CaseSensitive);
    EXPECT_FALSE(exact.Equals("hello"));
    EXPECT_TRUE(source.Equals("hELLO"));
    EXPECT_TRUE(source.Differs("Hell"));
}

TEST(BoundedString, CompareFoldsOnlyAsciiLettersAndIsUnsigned)
{
    CBoundedString s;
    EXPECT_EQ(0, s.Compare("Printer", "PRINTER"));
    EXPECT_LT(s.Compare("abc", "abd"), 0);
    EXPECT_GT(s.Compare("abc", "ab"), 0);
    // '_' lies between 'Z' and 'a': letters fold to lower case, so A sorts after it.
    EXPECT_GT(s.Compare("A", "_"), 0);
    EXPECT_NE(0, s.Compare("\xc4", "\xe4"));  // no locale folding
    EXPECT_GT(s.Compare("\xe4", "z"), 0);     // bytes compare unsigned
    EXPECT_EQ(0, s.Compare(nullptr, ""));
}

TEST(BoundedString, NamesThatDifferInCaseAreOneMapKey)
{
    std::map<CBoundedString, int, CBoundedStringLess> map;
    map[CBoundedString("Version")] = 1;
    map[CBoundedString("VERSION")] = 2;
    map[CBoundedString("version")] = 3;
    ASSERT_EQ(1u, map.size());
    EXPECT_EQ(3, map.begin()->second);
    EXPECT_STREQ("Version", map.begin()->first.Text);
}

}  // namespace
