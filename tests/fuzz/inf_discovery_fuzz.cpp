// A discovery candidate as its reader takes it: any bytes, NULs among them,
// read whole and read with the stop behind [Version]. Both must decide the
// class alike and match every model alike, every section that the read
// noted comes in whole on demand, and every value read stays within its
// 260 bytes.
#include <cstring>
#include <vector>

#include "fuzz_input.h"
#include "inf/candidate_match.h"
#include "inf/profile_values.h"

namespace {

const unsigned long Locales[] = {0x0409, 0x0407, 0x040c};
const size_t ModelsTried = 8;

void Read(CCandidateInf &candidate, const std::string &text, const CProfileStop *stop)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back(0);  // the reader's room for a closing NUL
    candidate.Read(buffer, text.size(), stop);
}

// The section names that the text's headers give, as the grammar has them,
// and the empty name of the lines before the first.
std::vector<CBoundedString> HeaderNames(const std::string &text)
{
    std::vector<CBoundedString> names(1);
    for (size_t at = 0; at < text.size();) {
        size_t end = text.find_first_of("\r\n", at);
        std::string line = text.substr(at, end == std::string::npos ? std::string::npos : end - at);
        at = end == std::string::npos ? text.size() : end + 1;
        size_t begin = 0;
        while (begin < line.size() && IsProfileBlank(line[begin]))
            ++begin;
        size_t close = line.rfind(']');
        if (begin < line.size() && line[begin] == '[' && close != std::string::npos && close > begin)
            names.push_back(CBoundedString(line.substr(begin + 1, close - begin - 1).c_str()));
    }
    return names;
}

void CheckStored(const CInfKey &key)
{
    for (const CBoundedString *text : {&key.Name, &key.Value}) {
        FUZZ_CHECK(std::memchr(text->Text, 0, sizeof text->Text));
        FUZZ_CHECK(!std::strpbrk(text->Text, "\r\n"));
        // The end may be blank where a NUL cut the text short.
        FUZZ_CHECK(!IsProfileBlank(text->Text[0]));
    }
    FUZZ_CHECK(!std::strchr(key.Name.Text, '='));
}

void CheckLine(CCandidateInf &candidate, CInfSection section, const CInfKey &key)
{
    CheckStored(key);
    char out[CBoundedString::Capacity];
    int read = ReadProfileValue(candidate, section->first, key.Name, out);
    FUZZ_CHECK(read == KeyCut || (read >= 0 && std::strlen(out) == static_cast<size_t>(read)));
    CInfKeyList::iterator first;
    FUZZ_CHECK(candidate.Store.FindKey(section, first, key.Name));
    CInfKeyList::iterator walk = section->second.begin();
    while (!walk->Name.Equals(key.Name))
        ++walk;
    FUZZ_CHECK(walk == first);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    CFuzzInput input(data, size);
    unsigned long locale = Locales[input.Byte() % (sizeof Locales / sizeof Locales[0])];
    std::string text = input.Bytes();

    CCandidateInf whole, stopped;
    Read(whole, text, nullptr);
    Read(stopped, text, &StopUnlessPrinter);
    bool printer = NamesPrinterClass(whole);
    FUZZ_CHECK(NamesPrinterClass(stopped) == printer);

    std::vector<CBoundedString> models;
    for (const CBoundedString &name : HeaderNames(text)) {
        CInfSection section = whole.Section(name);
        // Only a name too long for any lookup has no section.
        FUZZ_CHECK(section != whole.Store.Sections.end() || name.Length() == CBoundedString::MaxLength);
        if (section == whole.Store.Sections.end())
            continue;
        for (const CInfKey &key : section->second) {
            CheckLine(whole, section, key);
            if (models.size() < ModelsTried)
                models.push_back(key.Name);
        }
    }
    for (const CBoundedString &model : models) {
        CBoundedString maker, again;
        int found = MatchCandidate(whole, model, maker, locale);
        FUZZ_CHECK(found == MatchCandidate(stopped, model, again, locale));
        FUZZ_CHECK(!found || (printer && maker.Equals(again)));
        FUZZ_CHECK(std::memchr(maker.Text, 0, sizeof maker.Text));
    }
    return 0;
}
