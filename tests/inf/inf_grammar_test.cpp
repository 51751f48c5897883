#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "inf/inf_file.h"

namespace {

// Parses text as Load would hand it over: with CR, LF and NUL appended.
void ParseText(CInfFile &inf, const std::string &text)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.insert(buffer.end(), {'\r', '\n', 0});
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

const struct {
    const char *Text, *Section, *Expected;  // Lines() of the section
} GrammarCases[] = {
    {"[Version]\r\n  Class=Printer\r\nSignature=x", "Version", "Signature=x|"},
    {"[S]\r\nKey = \"a;b\"", "S", "Key=\"a|"},
    {"[S]\r\nA=B=C", "S", "A=B=C|"},
    {"[S]\r\nName only", "S", "Name only=|"},
    {"[S]\r\n; comment\r\nk=v ; trailing", "S", "k=v|"},
    {"[S]\r\n\tk\t=\tv\t", "S", "\tk\t=\tv\t|"},
    {"[S]\r\n=value", "S", "=value|"},
    {"[S]\r\nk=", "S", "k=|"},
    {"[S]\r\nline\\\r\nnext", "S", "line\\=|next=|"},
    {"[Foo] ; comment\r\nk=v", "Foo", "k=v|"},
    {"[Foo]\r\na=1\r\n[Bar]\r\nb=2\r\n[FOO]\r\nc=3", "foo", "a=1|c=3|"},
    {"[ Spaced Name ]\r\nk=v", " Spaced Name ", "k=v|"},
    {"[Spaced Name]\r\nk=v", " Spaced Name ", "<none>"},
    {"[S]\r\n[Broken\r\nk=v", "S", "k=v|"},
    {"[S]\r\nk=v\r\n[]\r\nlost=1", "S", "k=v|"},
    {"[S]x]y\r\nk=v", "S", "k=v|"},
    {"orphan=1\r\n[S]\r\nk=v", "S", "k=v|"},
    {"[S]\nlf=1\nlf=2", "S", "lf=1|lf=2|"},
    {"[S]\rcr=1\rcr=2", "S", "cr=1|cr=2|"},
    {"[S]\n\r\n\r\r\nrun=1\r\n\n\nrun=2", "S", "run=1|run=2|"},
    {"[S]\r\ndup=1\r\ndup=2", "S", "dup=1|dup=2|"},
    {"[S]\r\n k=indented\r\nk=kept", "S", "k=kept|"},
};

TEST(InfGrammar, LinesTheReaderKeeps)
{
    for (const auto &c : GrammarCases) {
        CInfFile inf;
        ParseText(inf, c.Text);
        EXPECT_EQ(c.Expected, Lines(inf, c.Section)) << "text: " << c.Text;
    }
    CInfFile inf;
    ParseText(inf, "[b]\r\n[A]\r\n[]\r\n[c]\r\n[a]");
    std::string order;
    for (const auto &section : inf.Sections)
        order += std::string(section.first.Text) + ",";
    EXPECT_EQ("A,b,c,", order) << "ordered ignoring case, the first spelling kept, no empty name";
}

// Text that does not fit is marked, never passed off as the whole: a cut
// section name names no section, and a cut line reads as neither found nor
// missing. Blanks go before the length is judged.
TEST(InfGrammar, OverlongTextIsMarkedCutAndBlanksCountBeforeStripping)
{
    const std::string name(3000, 'n'), value(5000, 'v'), section(1000, 's');
    CInfFile inf;
    ParseText(inf, "[" + section + "]\r\nlost=1\r\n[kept]\r\n" + name + "=1\r\nshort=" + value + "\r\nk=" +
                       std::string(258, ' ') + "value" + std::string(300, ' ') + "\r\n[Strings]\r\nlong=" + value +
                       "\r\n[tokens]\r\nnamed=%long%");
    ASSERT_EQ(3u, inf.Sections.size());
    const CInfKeyList &keys = inf.Sections.find(CBoundedString("kept"))->second;
    ASSERT_EQ(3u, keys.size());
    EXPECT_TRUE(keys.front().Cut && std::next(keys.begin())->Cut);
    EXPECT_EQ(std::string(259, 'n'), keys.front().Name.Text);
    EXPECT_FALSE(keys.back().Cut);
    EXPECT_EQ("value", std::string(keys.back().Value.Text));
    char out[260] = "";
    EXPECT_EQ(KeyCut, inf.LookupKey("kept", "short", out, "d"));
    EXPECT_STREQ("d", out);
    EXPECT_EQ(0, inf.GetStoreValue("kept", "short", out, "d", 0x0409));
    EXPECT_EQ(0, inf.GetStoreValue("kept", "%long%", out, "d", 0x0409));  // a name cut in Strings
    EXPECT_EQ(0, inf.GetStoreValue("tokens", "named", out, "d", 0x0409));  // a value that is
    EXPECT_STREQ("d", out);
}

const struct {
    const char *Section, *Key, *Default;
    int Result;
    const char *Out;  // null: out stays untouched
} LookupCases[] = {
    {"version", "class", "d", 1, "Printer"},
    {"VERSION", "DUP", nullptr, 1, "first"},
    {"Version", "empty", "d", 1, "d"},
    {"Version", "empty", nullptr, 1, ""},
    {"Version", "missing", "d", 0, "d"},
    {"Missing", "class", "d", 0, "d"},
    {"", "class", "d", 0, nullptr},
    {nullptr, "class", "d", 0, nullptr},
    {"Version", "", "d", 0, nullptr},
    {"Version", nullptr, "d", 0, nullptr},
};

TEST(InfLookup, FindsKeysInAnyCaseTheFirstDuplicateAndDefaults)
{
    CInfFile inf;
    ParseText(inf, "[Version]\r\nCLASS=Printer\r\nEmpty=\r\ndup=first\r\ndup=second");
    for (const auto &c : LookupCases) {
        char out[260] = "untouched";
        EXPECT_EQ(c.Result, inf.LookupKey(c.Section, c.Key, out, c.Default))
            << (c.Section ? c.Section : "(null)") << "/" << (c.Key ? c.Key : "(null)");
        EXPECT_STREQ(c.Out ? c.Out : "untouched", out);
    }
    EXPECT_EQ(0, inf.LookupKey("Version", "class", nullptr, "d"));
    EXPECT_EQ(4, inf.GetKeyCount("Version"));
    EXPECT_EQ(0, inf.GetKeyCount(nullptr));
}

}  // namespace
