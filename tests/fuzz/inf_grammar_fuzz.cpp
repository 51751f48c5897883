// The INF grammar as Load hands text to it, then every section and key looked
// up again by its own name, and every name and value run through the token
// expansion of a few locales. A line whose name or value did not fit is
// marked, and no read gives anything of it: not its text, not a default.
#include <cstring>
#include <vector>

#include "fuzz_input.h"
#include "inf/inf_file.h"
#include "inf/strings.h"

namespace {

const unsigned long Locales[] = {0x0409, 0x0407, 0x040c, 0x0c0c};
const char Default[] = "default";

bool Terminated(const char *buffer, size_t size) { return std::memchr(buffer, 0, size) != nullptr; }

// What the grammar stores: bounded, blanks stripped, no line end or comment.
// The head of a cut text may end in a blank that stood inside it.
void CheckStored(const CBoundedString &text, bool cut)
{
    FUZZ_CHECK(Terminated(text.Text, sizeof text.Text));
    size_t n = std::strlen(text.Text);
    FUZZ_CHECK(!n || (text.Text[0] != ' ' && (cut || text.Text[n - 1] != ' ')));
    FUZZ_CHECK(!std::strpbrk(text.Text, "\r\n;"));
}

void CheckExpansion(CInfFile &inf, const char *text, unsigned long locale)
{
    std::vector<char> out(CBoundedString::Capacity, 'x');
    int found = inf.ExpandStoreToken(text, out.data(), locale);
    if (!*text) {
        FUZZ_CHECK(!found && out[0] == 'x');  // empty text leaves out alone
        return;
    }
    FUZZ_CHECK(Terminated(out.data(), out.size()));
    if (found <= 0) {
        FUZZ_CHECK(std::strncmp(out.data(), text, CBoundedString::MaxLength) == 0);
    } else {
        FUZZ_CHECK(IsToken(text));
        size_t n = std::strlen(out.data());
        FUZZ_CHECK(!n || (out[0] != '"' && out[n - 1] != '"'));
    }
    // In place, as callers that reuse one buffer do.
    CBoundedString same(text);
    FUZZ_CHECK(inf.ExpandStoreToken(same, same, locale) == found);
    FUZZ_CHECK(std::strcmp(same.Text, out.data()) == 0);
}

void CheckKey(CInfFile &inf, CInfSection entry, const CInfKey &key)
{
    CheckStored(key.Name, key.Cut);
    CheckStored(key.Value, key.Cut);
    FUZZ_CHECK(!std::strchr(key.Name.Text, '='));
    // Only a field that was filled to its end can have been cut.
    FUZZ_CHECK(!key.Cut || key.Name.Length() == CBoundedString::MaxLength ||
               key.Value.Length() == CBoundedString::MaxLength);
    if (key.Name.IsEmpty())
        return;
    CInfKeyList::iterator first;
    FUZZ_CHECK(inf.FindKey(entry, first, key.Name));
    // The index gives the first line of the name in file order.
    CInfKeyList::iterator walk = entry->second.begin();
    while (!walk->Name.Equals(key.Name))
        ++walk;
    FUZZ_CHECK(walk == first);
    char out[CBoundedString::Capacity];
    FUZZ_CHECK(inf.LookupKey(entry->first, key.Name, out, Default) == (first->Cut ? KeyCut : KeyFound));
    FUZZ_CHECK(std::strcmp(out, first->Cut || first->Value.IsEmpty() ? Default : first->Value.Text) == 0);
    if (first->Cut && !IsToken(entry->first) && !IsToken(key.Name)) {
        FUZZ_CHECK(inf.GetStoreValue(entry->first, key.Name, out, Default, 0x0409) == 0);
        FUZZ_CHECK(std::strcmp(out, Default) == 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    CFuzzInput input(data, size);
    unsigned long locale = Locales[input.Byte() % (sizeof Locales / sizeof Locales[0])];
    std::string text = input.Bytes();
    // As Load appends to what it read.
    std::vector<char> buffer(text.begin(), text.end());
    buffer.insert(buffer.end(), {'\r', '\n', '\0'});

    CInfFile inf;
    inf.Parse(buffer.data());
    for (CInfSection section = inf.Sections.begin(); section != inf.Sections.end(); ++section) {
        FUZZ_CHECK(!section->first.IsEmpty());
        FUZZ_CHECK(Terminated(section->first.Text, sizeof section->first.Text));
        CInfSection found;
        FUZZ_CHECK(inf.FindSection(section->first, found) && found == section);
        FUZZ_CHECK(inf.GetKeyCount(section->first) == static_cast<int>(section->second.size()));
        CheckExpansion(inf, section->first, locale);
        for (const CInfKey &key : section->second) {
            CheckKey(inf, section, key);
            CheckExpansion(inf, key.Name, locale);
            CheckExpansion(inf, key.Value, locale);
        }
    }
    return 0;
}
