#include <cstdio>
#include <cstring>

#include "inf/inf_file.h"
#include "inf/strings.h"

namespace {

const char StringsWord[] = "Strings";
const unsigned long PrimaryLanguageMask = 0x3ff;

void FormSection(CBoundedString &name, unsigned long locale)
{
    std::snprintf(name.Text, sizeof name.Text, "%s.%04x", StringsWord, static_cast<unsigned>(locale));
}

int ReadStore(void *source, const char *section, const char *token, char *out, const char *original)
{
    // A key with an empty value counts as found and leaves the token itself.
    return static_cast<CInfFile *>(source)->LookupKey(section, token, out, original);
}

}  // namespace

void FormStringsSections(unsigned long locale, CBoundedString (&names)[StringsSectionCount])
{
    names[0] = CBoundedString();
    FormSection(names[0], locale);
    names[1] = CBoundedString();
    FormSection(names[1], locale & PrimaryLanguageMask);
    names[2] = CBoundedString(StringsWord);
}

bool IsToken(const char *text)
{
    size_t length = text ? std::strlen(text) : 0;
    return length && text[0] == '%' && text[length - 1] == '%';
}

int ResolveToken(const char *text, char *out, unsigned long locale, StringsReader read, void *source)
{
    if (!text || !*text || !out)
        return 0;
    // The caller may hand in the same buffer for text and out.
    CBoundedString original(text);
    if (!IsToken(original)) {
        CopyBounded(out, original, CBoundedString::Capacity);
        return 0;
    }
    CBoundedString token(original);
    StripChar(token, '%');

    CBoundedString sections[StringsSectionCount];
    FormStringsSections(locale, sections);
    int result = 0;
    for (int i = 0; i < StringsSectionCount && !result; ++i)
        result = read(source, sections[i], token, out, original);
    if (!result) {
        CopyBounded(out, original, CBoundedString::Capacity);
        return 0;
    }
    StripChar(out, '"');
    return result;
}

int CInfFile::ExpandStoreToken(const char *text, char *out, unsigned long locale)
{
    return ResolveToken(text, out, locale, ReadStore, this);
}
