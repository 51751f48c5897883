#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "inf/inf_file.h"

namespace {

// Parses text as Load would hand it over: with CR, LF and NUL appended.
void ParseText(CInfFile &inf, const std::string &text)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back('\r');
    buffer.push_back('\n');
    buffer.push_back(0);
    inf.Parse(buffer.data());
}

// The lines of a section as "name=value|name=value|".
std::string Lines(CInfFile &inf, const char *section)
{
    CInfSection entry;
    if (!inf.FindSection(section, entry))
        return "<none>";
    std::string out;
    for (const CInfKey &key : entry->second)
        out += std::string(key.Name.Text) + "=" + key.Value.Text + "|";
    return out;
}

struct GrammarCase {
    const char *Text;
    const char *Section;
    const char *Expected;  // Lines() of the section
};

const GrammarCase GrammarCases[] = {
    {"[Version]\r\n  Class=Printer\r\nSignature=x", "Version", "Signature=x|"},
    {"[S]\r\nKey = \"a;b\"", "S", "Key=\"a|"},
    {"[S]\r\nA=B=C", "S", "A=B=C|"},
    {"[S]\r\nName only", "S", "Name only=|"},
    {"[S]\r\n; comment\r\nk=v ; trailing", "S", "k=v|"},
    {"[S]\r\n\tk\t=\tv\t", "S", "\tk\t=\tv\t|"},
    {"[S]\r\n=value", "S", "=value|"},
    {"[S]\r\nk=", "S", "k=|"},
    {"[S]\r\nk=\"quoted\"", "S", "k=\"quoted\"|"},
    {"[S]\r\nline\\\r\nnext", "S", "line\\=|next=|"},
    {"[Foo] ; comment\r\nk=v", "Foo", "k=v|"},
    {"[Foo]\r\na=1\r\n[Bar]\r\nb=2\r\n[FOO]\r\nc=3", "foo", "a=1|c=3|"},
    {"[ Spaced Name ]\r\nk=v", " Spaced Name ", "k=v|"},
    {"[Spaced Name]\r\nk=v", " Spaced Name ", "<none>"},
    {"[S]\r\n[Broken\r\nk=v", "S", "k=v|"},
    {"[S]\r\nk=v\r\n[]\r\nlost=1", "S", "k=v|"},
    {"[S]x]y\r\nk=v", "S", "k=v|"},
    {"[S]\nlf=1\nlf=2", "S", "lf=1|lf=2|"},
    {"[S]\rcr=1\rcr=2", "S", "cr=1|cr=2|"},
    {"[S]\n\r\n\r\r\nrun=1\r\n\n\nrun=2", "S", "run=1|run=2|"},
    {"[S]\r\ndup=1\r\ndup=2", "S", "dup=1|dup=2|"},
    {"[S]\r\n k=indented\r\nk=kept", "S", "k=kept|"},
};

TEST(InfGrammar, LinesTheReaderKeeps)
{
    for (const GrammarCase &c : GrammarCases) {
        CInfFile inf;
        ParseText(inf, c.Text);
        EXPECT_EQ(c.Expected, Lines(inf, c.Section)) << "text: " << c.Text;
    }
}

TEST(InfGrammar, KeysBeforeAnySectionAreDropped)
{
    CInfFile inf;
    ParseText(inf, "orphan=1\r\n[S]\r\nk=v");
    EXPECT_EQ(1u, inf.Sections.size());
    EXPECT_EQ("k=v|", Lines(inf, "S"));
}

TEST(InfGrammar, EmptySectionNameStoresNothing)
{
    CInfFile inf;
    ParseText(inf, "[]\r\nk=v");
    EXPECT_TRUE(inf.Sections.empty());
    EXPECT_EQ(0, inf.GetKeyCount(""));
}

TEST(InfGrammar, NulEndsTheTextAndDropsTheLineItCuts)
{
    CInfFile inf;
    char text[] = "[S]\r\nwhole=1\r\ncut=2\0\r\nafter=3\r\n";
    inf.Parse(text);
    EXPECT_EQ("whole=1|", Lines(inf, "S"));
}

TEST(InfGrammar, SectionsAreOrderedByNameIgnoringCase)
{
    CInfFile inf;
    ParseText(inf, "[b]\r\n[A]\r\n[c]\r\n[a]");
    std::string order;
    for (const auto &section : inf.Sections)
        order += std::string(section.first.Text) + ",";
    EXPECT_EQ("A,b,c,", order);
}

TEST(InfGrammar, OverlongNamesAndValuesKeepTheir259Characters)
{
    std::string name(3000, 'n'), value(5000, 'v'), section(1000, 's');
    CInfFile inf;
    ParseText(inf, "[" + section + "]\r\n" + name + "=" + value);
    ASSERT_EQ(1u, inf.Sections.size());
    const CInfKey &key = inf.Sections.begin()->second.front();
    EXPECT_EQ(std::string(259, 'n'), key.Name.Text);
    EXPECT_EQ(std::string(259, 'v'), key.Value.Text);
    EXPECT_EQ(1, inf.GetKeyCount(std::string(259, 's').c_str()));
}

TEST(InfGrammar, BlanksCountBeforeTheyAreStripped)
{
    std::string padded = "k=" + std::string(258, ' ') + "value";
    CInfFile inf;
    ParseText(inf, "[S]\r\n" + padded);
    // The first 259 characters of the value are blanks and one 'v'.
    EXPECT_EQ("k=v|", Lines(inf, "S"));
}

TEST(InfLookup, FindsKeysInAnyCaseAndTheFirstDuplicate)
{
    CInfFile inf;
    ParseText(inf, "[Version]\r\nCLASS=Printer\r\nEmpty=\r\ndup=first\r\ndup=second");
    char out[260];
    EXPECT_EQ(1, inf.LookupKey("version", "class", out, "dflt"));
    EXPECT_STREQ("Printer", out);
    EXPECT_EQ(1, inf.LookupKey("VERSION", "DUP", out, nullptr));
    EXPECT_STREQ("first", out);
    EXPECT_EQ(4, inf.GetKeyCount("Version"));

    CInfSection section;
    ASSERT_EQ(1, inf.FindSection("Version", section));
    CInfKeyList::iterator key;
    ASSERT_EQ(1, inf.FindKey(section, key, "empty"));
    EXPECT_STREQ("Empty", key->Name.Text);
}

struct LookupCase {
    const char *Section, *Key, *Default;
    int Result;
    const char *Out;  // null: out stays untouched
};

const LookupCase LookupCases[] = {
    {"S", "k", "d", 1, "v"},
    {"S", "empty", "d", 1, "d"},
    {"S", "empty", nullptr, 1, ""},
    {"S", "missing", "d", 0, "d"},
    {"S", "missing", "", 0, ""},
    {"Missing", "k", "d", 0, "d"},
    {"", "k", "d", 0, nullptr},
    {nullptr, "k", "d", 0, nullptr},
    {"S", "", "d", 0, nullptr},
    {"S", nullptr, "d", 0, nullptr},
};

TEST(InfLookup, DefaultsAndRefusals)
{
    CInfFile inf;
    ParseText(inf, "[S]\r\nk=v\r\nempty=");
    for (const LookupCase &c : LookupCases) {
        char out[260] = "untouched";
        EXPECT_EQ(c.Result, inf.LookupKey(c.Section, c.Key, out, c.Default))
            << (c.Section ? c.Section : "(null)") << "/" << (c.Key ? c.Key : "(null)");
        EXPECT_STREQ(c.Out ? c.Out : "untouched", out);
    }
    EXPECT_EQ(0, inf.LookupKey("S", "k", nullptr, "d"));
    EXPECT_EQ(0, inf.GetKeyCount(nullptr));
    EXPECT_EQ(0, inf.GetKeyCount("nosuch"));
    CInfSection section;
    EXPECT_EQ(0, inf.FindSection(nullptr, section));
}

TEST(InfGrammar, SixteenBitTextYieldsNothingUsable)
{
    // "[S]\r\nk=v" in UTF-16LE with its byte-order mark.
    const char wide[] = "\xff\xfe[\0S\0]\0\r\0\n\0k\0=\0v\0";
    std::vector<char> buffer(wide, wide + sizeof wide - 1);
    buffer.insert(buffer.end(), {'\r', '\n', 0});
    CInfFile inf;
    inf.Parse(buffer.data());
    EXPECT_EQ(0, inf.GetKeyCount("S"));
}

}  // namespace
