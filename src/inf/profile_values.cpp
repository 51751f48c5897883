#include "inf/profile_values.h"

#include <cstring>

#include "inf/strings.h"

namespace {

// The profile calls look a name up without the blanks round it.
void TrimBlanks(CBoundedString &name)
{
    size_t begin = 0, end = name.Length();
    while (begin < end && IsProfileBlank(name.Text[begin]))
        ++begin;
    while (end > begin && IsProfileBlank(name.Text[end - 1]))
        --end;
    name.Text[end] = 0;
    std::memmove(name.Text, name.Text + begin, end - begin + 1);
}

int ReadFromCandidate(void *source, const char *section, const char *token, char *out, const char *)
{
    return ReadProfileValue(*static_cast<CCandidateInf *>(source), section, token, out);
}

}  // namespace

int ReadProfileValue(CCandidateInf &candidate, const char *section, const char *key, char *out)
{
    out[0] = 0;
    CBoundedString sectionName(section), keyName(key);
    TrimBlanks(sectionName);
    TrimBlanks(keyName);
    CInfSection entry = candidate.Section(sectionName);
    CInfKeyList::iterator line;
    if (!candidate.Store.FindKey(entry, line, keyName))
        return KeyMissing;
    if (line->Cut)
        return KeyCut;
    const char *value = line->Value.Text;
    size_t length = line->Value.Length();
    if (length >= 2 && (value[0] == '"' || value[0] == '\'') && value[length - 1] == value[0]) {
        ++value;
        length -= 2;
    }
    std::memcpy(out, value, length);
    out[length] = 0;
    return static_cast<int>(length);
}

int ExpandProfileToken(CCandidateInf &candidate, const char *text, char *out, unsigned long locale)
{
    return ResolveToken(text, out, locale, ReadFromCandidate, &candidate);
}
