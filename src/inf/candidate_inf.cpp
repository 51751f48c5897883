// A candidate as the platform's profile calls read a file. The discovery has
// always judged its candidates through those calls, and what it accepts must
// not change with the reader: so this grammar is theirs, not the installer's.
//   - A line ends at any run of CR and LF; NUL is a character like others
//     and only ends the name or value it stands in.
//   - Blanks round a line go: tab to CR, ^Z and space. An indented line
//     counts.
//   - A line that starts with "[" and holds a "]" is a header; the name is
//     what lies between the "[" and the last "]", exactly.
//   - Only a section's first header counts: the lines under a later header
//     of that name are never seen.
//   - Any other line is a key: the name before its first "=", the value
//     behind it, blanks round both gone. ";" starts no comment inside a
//     line; a line that begins with it is kept, and walks pass over it.
//   - A line of empty name right behind another of empty name is dropped.
// A search asks about a few sections of a large INF, so a section's lines
// are taken in only when asked for: the read itself looks at headers alone.
#include "inf/candidate_inf.h"

#include <cstring>

#include "inf/profile_values.h"

namespace {

// One line, the blanks round it gone; Next is where the line after it starts.
struct CTextLine {
    char *Begin, *End, *Next;
};

// A run of CR and LF of any length ends a line.
CTextLine NextLine(char *line, char *end)
{
    char *lineEnd = line;
    while (lineEnd < end && *lineEnd != '\r' && *lineEnd != '\n')
        ++lineEnd;
    char *next = lineEnd;
    while (next < end && (*next == '\r' || *next == '\n'))
        ++next;
    while (line < lineEnd && IsProfileBlank(*line))
        ++line;
    while (lineEnd > line && IsProfileBlank(lineEnd[-1]))
        --lineEnd;
    return CTextLine{line, lineEnd, next};
}

// The name that a header gives, cut off in place; null for any other line.
char *HeaderName(const CTextLine &line)
{
    if (line.Begin == line.End || *line.Begin != '[' || !std::memchr(line.Begin, ']', line.End - line.Begin))
        return nullptr;
    char *close = line.End;
    while (close[-1] != ']')
        --close;
    close[-1] = 0;
    return line.Begin + 1;
}

// Takes in the key lines of one section, in file order.
class CKeyReader {
public:
    explicit CKeyReader(CInfKeyList &lines) : Lines(lines), Previous(NoKey) {}

    void Add(char *begin, char *end)
    {
        char *nameEnd = static_cast<char *>(std::memchr(begin, '=', end - begin));
        char *value = nameEnd ? nameEnd + 1 : end;
        if (!nameEnd)
            nameEnd = end;
        while (nameEnd > begin && IsProfileBlank(nameEnd[-1]))
            --nameEnd;
        while (value < end && IsProfileBlank(*value))
            ++value;
        bool unnamed = nameEnd == begin;
        if (unnamed && Previous == UnnamedKey)
            return;
        Previous = unnamed ? UnnamedKey : NamedKey;
        *nameEnd = 0;
        *end = 0;
        Lines.emplace_back();
        CInfKey &key = Lines.back();
        bool nameFits = StoreField(key.Name, begin);
        bool valueFits = StoreField(key.Value, value);
        key.Cut = !nameFits || !valueFits;
    }

private:
    CInfKeyList &Lines;
    enum { NoKey, NamedKey, UnnamedKey } Previous;
};

}  // namespace

void CCandidateInf::Read(std::vector<char> &text, size_t length, const CProfileStop *stop)
{
    Text.swap(text);
    char *base = Text.data();
    // The lines before the first header: the profile calls reach them by
    // the empty name.
    CPlace *current = &Places.emplace("", CPlace{0, 0, false, Store.Sections.end()}).first->second;
    bool atStop = false;
    for (char *cursor = base; cursor < base + length;) {
        CTextLine line = NextLine(cursor, base + length);
        if (char *name = HeaderName(line)) {
            if (current)
                current->End = cursor - base;
            if (atStop && !stop->KeepReading(*this))
                return;
            // A later header of a name already seen, or a name that no
            // lookup of 259 characters can reach, takes its lines nowhere.
            size_t begin = line.Next - base;
            std::pair<CPlaces::iterator, bool> added(Places.end(), false);
            if (std::strlen(name) <= CBoundedString::MaxLength)
                added = Places.emplace(name, CPlace{begin, begin, false, Store.Sections.end()});
            current = added.second ? &added.first->second : nullptr;
            atStop = current && stop && CompareNoCase(name, stop->Section) == 0;
        }
        cursor = line.Next;
    }
    if (current)
        current->End = length;
}

CInfSection CCandidateInf::Section(const char *name)
{
    CPlaces::iterator place = Places.find(name ? name : "");
    if (place == Places.end())
        return Store.Sections.end();
    if (!place->second.Read) {
        place->second.Read = true;
        place->second.Entry = Store.Sections.emplace(CBoundedString(place->first), CInfKeyList()).first;
        ReadLines(place->second.Entry->second, place->second);
    }
    return place->second.Entry;
}

void CCandidateInf::ReadLines(CInfKeyList &lines, const CPlace &place)
{
    CKeyReader reader(lines);
    char *end = Text.data() + place.End;
    for (char *cursor = Text.data() + place.Begin; cursor < end;) {
        CTextLine line = NextLine(cursor, end);
        if (line.Begin < line.End)
            reader.Add(line.Begin, line.End);
        cursor = line.Next;
    }
}
