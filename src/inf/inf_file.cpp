#include "inf/inf_file.h"

#include <cstring>

namespace {

// Copies text into a field, keeping the first 259 characters of a longer one.
void StoreField(CBoundedString &field, const char *text)
{
    CopyBounded(field.Text, text, sizeof field.Text);
}

}  // namespace

CInfFile::CInfFile() {}

CInfFile::~CInfFile() {}

void CInfFile::AddSection(const char *name)
{
    if (!name || !*name)
        return;
    CBoundedString key;
    StoreField(key, name);
    Sections.emplace(key, CInfKeyList());
}

void CInfFile::Parse(char *text)
{
    if (!text)
        return;
    CInfSection current = Sections.end();
    char *p = text;
    while (*p) {
        char *line = p;
        char *end = p;
        while (*end && *end != '\r' && *end != '\n')
            ++end;
        if (!*end)
            break;  // a line that the end of the text cut off has no line end: dropped
        p = end;
        while (*p == '\r' || *p == '\n')
            ++p;
        *end = 0;

        switch (line[0]) {
        case 0:
        case ' ':
        case ';':
            continue;
        case '[': {
            char *close = std::strchr(line + 1, ']');
            if (!close)
                continue;
            *close = 0;
            AddSection(line + 1);
            CBoundedString name;
            StoreField(name, line + 1);
            current = name.IsEmpty() ? Sections.end() : Sections.find(name);
            continue;
        }
        default:
            break;
        }

        if (current == Sections.end())
            continue;
        if (char *comment = std::strchr(line, ';'))
            *comment = 0;
        char *value = std::strchr(line, '=');
        if (value)
            *value++ = 0;
        CInfKey key;
        StoreField(key.Name, line);
        StoreField(key.Value, value);
        StripChar(key.Name.Text, ' ');
        StripChar(key.Value.Text, ' ');
        current->second.push_back(key);
    }
}

int CInfFile::FindSection(const char *name, CInfSection &entry)
{
    if (!name || !*name)
        return 0;
    CBoundedString key;
    StoreField(key, name);
    CInfSection found = Sections.find(key);
    if (found == Sections.end())
        return 0;
    entry = found;
    return 1;
}

int CInfFile::GetKeyCount(const char *section)
{
    CInfSection entry;
    if (!FindSection(section, entry))
        return 0;
    return static_cast<int>(entry->second.size());
}

int CInfFile::FindKey(CInfSection entry, CInfKeyList::iterator &key, const char *name)
{
    if (entry == Sections.end())
        return 0;
    for (CInfKeyList::iterator it = entry->second.begin(); it != entry->second.end(); ++it) {
        if (it->Name.Equals(name)) {
            key = it;
            return 1;
        }
    }
    return 0;
}

int CInfFile::LookupKey(const char *section, const char *key, char *out, const char *defaultValue)
{
    if (!section || !*section || !key || !*key || !out)
        return 0;
    CopyBounded(out, defaultValue, CBoundedString::Capacity);
    CInfSection entry;
    CInfKeyList::iterator line;
    if (!FindSection(section, entry) || !FindKey(entry, line, key))
        return 0;
    if (!line->Value.IsEmpty())
        CopyBounded(out, line->Value.Text, CBoundedString::Capacity);
    return 1;
}
