#include <windows.h>

#include "inf/inf_file.h"
#include "inf/strings.h"

namespace {

int ReadProfile(void *source, const char *section, const char *token, char *out, const char *)
{
    // The count of characters copied: an empty entry counts as not found.
    return static_cast<int>(GetPrivateProfileStringA(section, token, "", out, CBoundedString::Capacity,
                                                     static_cast<const char *>(source)));
}

}  // namespace

int CInfFile::ExpandToken(const char *text, char *out, const char *profile)
{
    unsigned long locale = GetThreadLocale();
    if (!profile)
        return ExpandStoreToken(text, out, locale);
    return ResolveToken(text, out, locale, ReadProfile, const_cast<char *>(profile));
}

int CInfFile::GetValue(const char *section, const char *key, char *out, const char *defaultValue)
{
    if (!section || !*section || !key || !*key || !out)
        return 0;
    CBoundedString sectionName, keyName, raw;
    ExpandToken(section, sectionName, NULL);
    ExpandToken(key, keyName, NULL);

    int found = LookupKey(sectionName, keyName, raw, defaultValue);
    if (!found) {
        size_t length = keyName.Length();
        bool opens = keyName.Text[0] == '"';
        bool closes = length && keyName.Text[length - 1] == '"';
        CBoundedString other;
        bool tryOther = true;
        if (opens && closes) {
            other = keyName;
            StripChar(other, '"');
        } else if (opens) {
            other = keyName;
            other.Append("\"");
        } else if (!closes) {
            other = CBoundedString("\"");
            other.Append(keyName);
            other.Append("\"");
        } else {
            tryOther = false;
        }
        if (tryOther)
            found = LookupKey(sectionName, other, raw, defaultValue);
    }
    ExpandToken(raw, out, NULL);
    return found;
}
