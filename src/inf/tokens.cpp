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

// The key as the file may have written it otherwise: without its quotes, or
// with them; false when there is no other way.
bool QuotedOtherwise(const CBoundedString &key, CBoundedString &other)
{
    size_t length = key.Length();
    bool opens = key.Text[0] == '"';
    bool closes = length && key.Text[length - 1] == '"';
    if (opens && closes) {
        other = key;
        StripChar(other, '"');
    } else if (opens) {
        other = key;
        other.Append("\"");
    } else if (!closes) {
        other = CBoundedString("\"");
        other.Append(key);
        other.Append("\"");
    } else {
        return false;
    }
    return true;
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
    // An unknown token stays as it is written; one whose text was cut does
    // not: KeyCut tells the caller so.
    if (result <= 0) {
        CopyBounded(out, original, CBoundedString::Capacity);
        return result;
    }
    StripChar(out, '"');
    return result;
}

int CInfFile::ExpandStoreToken(const char *text, char *out, unsigned long locale)
{
    return ResolveToken(text, out, locale, ReadStore, this);
}

int CInfFile::GetStoreValue(const char *section, const char *key, char *out, const char *defaultValue,
                            unsigned long locale)
{
    if (!section || !*section || !key || !*key || !out)
        return 0;
    CBoundedString sectionName, keyName, raw;
    int found = KeyCut;
    if (ExpandStoreToken(section, sectionName, locale) != KeyCut && ExpandStoreToken(key, keyName, locale) != KeyCut) {
        found = LookupKey(sectionName, keyName, raw, defaultValue);
        CBoundedString other;
        if (found == KeyMissing && QuotedOtherwise(keyName, other))
            found = LookupKey(sectionName, other, raw, defaultValue);
    }
    // A cut text stands for nothing: it reads as a missing key.
    if (found == KeyCut || ExpandStoreToken(raw, out, locale) == KeyCut) {
        CopyBounded(out, defaultValue, CBoundedString::Capacity);
        return 0;
    }
    return found;
}
