// A discovery candidate as its reader takes it: any bytes, NULs among them,
// read whole and read with the stop behind [Version]. Both must decide the
// class alike, a candidate read whole must match as the one that was not
// stopped, and every value read stays within its 260 bytes.
#include <cstring>
#include <vector>

#include "fuzz_input.h"
#include "inf/candidate_match.h"
#include "inf/profile_values.h"

namespace {

const unsigned long Locales[] = {0x0409, 0x0407, 0x040c};
const size_t ModelsTried = 8;

void Read(CInfFile &store, const std::string &text, const CProfileStop *stop)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back(0);  // the reader's room for a closing NUL
    store.ParseProfile(buffer.data(), text.size(), stop);
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

void CheckLine(CInfFile &store, CInfSection section, const CInfKey &key)
{
    CheckStored(key);
    char out[CBoundedString::Capacity];
    int read = ReadProfileValue(store, section->first, key.Name, out);
    FUZZ_CHECK(read == KeyCut || (read >= 0 && std::strlen(out) == static_cast<size_t>(read)));
    CInfKeyList::iterator first;
    FUZZ_CHECK(store.FindKey(section, first, key.Name));
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

    CInfFile whole, stopped;
    Read(whole, text, nullptr);
    Read(stopped, text, &StopUnlessPrinter);
    bool printer = NamesPrinterClass(whole);
    FUZZ_CHECK(NamesPrinterClass(stopped) == printer);
    // A printer INF is never cut short.
    FUZZ_CHECK(!printer || stopped.Sections.size() == whole.Sections.size());

    std::vector<CBoundedString> models;
    for (CInfSection section = whole.Sections.begin(); section != whole.Sections.end(); ++section)
        for (const CInfKey &key : section->second) {
            CheckLine(whole, section, key);
            if (models.size() < ModelsTried)
                models.push_back(key.Name);
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
