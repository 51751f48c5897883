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
    return GetStoreValue(section, key, out, defaultValue, GetThreadLocale());
}
