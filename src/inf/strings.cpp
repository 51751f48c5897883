#include <windows.h>

#include "inf/inf_file.h"
#include "inf/strings.h"

namespace {

const char StringsWord[] = "Strings";

bool IsToken(const char *text)
{
    size_t length = lstrlenA(text);
    return length && text[0] == '%' && text[length - 1] == '%';
}

}  // namespace

void FormStringsSections(unsigned long locale, CBoundedString (&names)[StringsSectionCount])
{
    // wsprintfA writes at most 1024 characters; ours are a handful.
    char text[1025];
    wsprintfA(text, "%s.%04x", StringsWord, static_cast<unsigned>(locale));
    names[0] = CBoundedString(text);
    wsprintfA(text, "%s.%04x", StringsWord, static_cast<unsigned>(locale & 0x3ff));
    names[1] = CBoundedString(text);
    names[2] = CBoundedString(StringsWord);
}

int CInfFile::ExpandToken(const char *text, char *out, const char *profile)
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
    FormStringsSections(GetThreadLocale(), sections);
    int result = 0;
    for (int i = 0; i < StringsSectionCount && !result; ++i) {
        if (profile)
            result = static_cast<int>(
                GetPrivateProfileStringA(sections[i], token, "", out, CBoundedString::Capacity, profile));
        else
            result = LookupKey(sections[i], token, out, original);
    }
    if (!result) {
        CopyBounded(out, original, CBoundedString::Capacity);
        return 0;
    }
    StripChar(out, '"');
    return result;
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
