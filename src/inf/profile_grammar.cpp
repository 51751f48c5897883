// An INF as the platform's profile calls read it. The discovery has always
// judged its candidates through those calls, and what it accepts must not
// change with the reader: so this grammar is theirs, not the installer's.
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
#include <cstring>

#include "inf/inf_file.h"
#include "inf/profile_values.h"

namespace {

class CProfileParse {
public:
    CProfileParse(CInfFile &store, const CProfileStop *stop)
        : Store(store), Stop(stop), Current(nullptr), Previous(NoKey), StopSectionSeen(false)
    {
        // Lines before any header: the profile calls reach them by the empty name.
        Current = &Store.Sections.emplace(CBoundedString(), CInfKeyList()).first->second;
    }

    // False once the stop says that reading ends here.
    bool Line(char *begin, char *end)
    {
        while (begin < end && IsProfileBlank(*begin))
            ++begin;
        while (end > begin && IsProfileBlank(end[-1]))
            --end;
        if (begin == end)
            return true;
        if (*begin == '[' && std::memchr(begin, ']', end - begin)) {
            if (StopSectionSeen && !Stop->KeepReading(Store))
                return false;
            StopSectionSeen = false;
            OpenSection(begin, end);
        } else {
            AddKey(begin, end);
        }
        return true;
    }

private:
    void OpenSection(char *begin, char *end)
    {
        char *close = end;
        while (close[-1] != ']')
            --close;
        close[-1] = 0;
        Previous = NoKey;
        Current = nullptr;
        CBoundedString name;
        if (!StoreField(name, begin + 1))
            return;  // no name of 259 characters can reach it
        std::pair<CInfSection, bool> added = Store.Sections.emplace(name, CInfKeyList());
        if (!added.second)
            return;
        Current = &added.first->second;
        StopSectionSeen = Stop && name.Equals(Stop->Section);
    }

    void AddKey(char *begin, char *end)
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
        if (!Current)
            return;
        *nameEnd = 0;
        *end = 0;
        CInfKey key;
        bool nameFits = StoreField(key.Name, begin);
        bool valueFits = StoreField(key.Value, value);
        key.Cut = !nameFits || !valueFits;
        Current->push_back(key);
    }

    CInfFile &Store;
    const CProfileStop *Stop;
    CInfKeyList *Current;  // null: lines go nowhere
    enum { NoKey, NamedKey, UnnamedKey } Previous;
    bool StopSectionSeen;  // the current section is the first of the stop's name
};

}  // namespace

void CInfFile::ParseProfile(char *text, size_t length, const CProfileStop *stop)
{
    if (!text)
        return;
    Indexed = false;
    CProfileParse parse(*this, stop);
    char *end = text + length;
    for (char *line = text; line < end;) {
        char *lineEnd = line;
        while (lineEnd < end && *lineEnd != '\r' && *lineEnd != '\n')
            ++lineEnd;
        char *next = lineEnd;
        while (next < end && (*next == '\r' || *next == '\n'))
            ++next;
        if (!parse.Line(line, lineEnd))
            return;
        line = next;
    }
    IndexKeys();
}
