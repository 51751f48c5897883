#include "inf/inf_file.h"

#include <cstring>

bool StoreField(CBoundedString &field, const char *text)
{
    CopyBounded(field.Text, text, sizeof field.Text);
    return !text || std::strlen(text) <= CBoundedString::MaxLength;
}

bool JoinLine(const CInfKey &key, CBoundedString &line)
{
    if (key.Cut || key.Name.Length() + key.Value.Length() > CBoundedString::MaxLength)
        return false;
    line = key.Name;
    line.Append(key.Value);
    return true;
}

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

namespace {

// Cuts the next line off the text, in place, at its line end. A run of CR
// and LF of any length is one line end; text moves on behind it. Null when
// the text ends without a line end: such a line is dropped.
char *NextLine(char *&text)
{
    char *line = text;
    char *end = text;
    while (*end && *end != '\r' && *end != '\n')
        ++end;
    if (!*end)
        return nullptr;
    text = end;
    while (*text == '\r' || *text == '\n')
        ++text;
    *end = 0;
    return line;
}

// A key line is cut at its first ";" and then at its first "=", quotes or
// not; blanks round the name and the value go, tabs stay. The blanks go
// before a text is judged: it is cut only when what it says does not fit.
CInfKey ReadKeyLine(char *line)
{
    if (char *comment = std::strchr(line, ';'))
        *comment = 0;
    char *value = std::strchr(line, '=');
    if (value)
        *value++ = 0;
    CInfKey key;
    bool nameFits = StoreField(key.Name, StripChar(line, ' '));
    bool valueFits = StoreField(key.Value, StripChar(value, ' '));
    key.Cut = !nameFits || !valueFits;
    return key;
}

}  // namespace

// Only the first character of a line says what it is.
void CInfFile::Parse(char *text)
{
    if (!text)
        return;
    KeyIndex.clear();
    CInfSection current = Sections.end();
    while (*text) {
        char *line = NextLine(text);
        if (!line)
            break;
        switch (line[0]) {
        case 0:
        case ' ':
        case ';':
            break;
        case '[':
            OpenSection(line, current);
            break;
        default:
            if (current != Sections.end())
                current->second.push_back(ReadKeyLine(line));
            break;
        }
    }
}

// A header names the text between "[" and the first "]" exactly; "[]" leaves
// no current section, and a line without "]" leaves the current one. A name
// that does not fit names no section: its lines go nowhere, rather than
// into the section of its first 259 characters.
void CInfFile::OpenSection(char *header, CInfSection &current)
{
    char *close = std::strchr(header + 1, ']');
    if (!close)
        return;
    *close = 0;
    CBoundedString name;
    if (!StoreField(name, header + 1) || name.IsEmpty()) {
        current = Sections.end();
        return;
    }
    AddSection(header + 1);
    current = Sections.find(name);
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

int CInfFile::LookupKey(const char *section, const char *key, char *out, const char *defaultValue)
{
    if (!section || !*section || !key || !*key || !out)
        return 0;
    CopyBounded(out, defaultValue, CBoundedString::Capacity);
    CInfSection entry;
    CInfKeyList::iterator line;
    if (!FindSection(section, entry) || !FindKey(entry, line, key))
        return KeyMissing;
    if (line->Cut)
        return KeyCut;
    if (!line->Value.IsEmpty())
        CopyBounded(out, line->Value.Text, CBoundedString::Capacity);
    return KeyFound;
}
