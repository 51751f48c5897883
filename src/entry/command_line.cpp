#include "entry/command_line.h"

#include <cstring>
#include <new>
#include <vector>

int CCommandLine::Parse(const char *text)
{
    Groups.clear();
    if (!text || !*text)
        text = ProcessCommandLine();
    Text = CBoundedString(text);
    if (Text.IsEmpty())
        return 0;
    // A longer line would be cut inside its last word, which then names
    // another file or printer: such a line is refused whole.
    if (text[Text.Length()])
        return 0;

    CBoundedString work(Text);
    char *piece = work.Text;
    while (piece) {
        char *nextPiece = NextQuotedToken(piece, '/');
        StripChar(piece, ' ');
        if (*piece) {
            CCommandGroup group;
            char *word = piece;
            char *rest = NextQuotedToken(word, ' ');
            group.push_back(CBoundedString(word));
            while (rest) {
                word = rest;
                rest = NextQuotedToken(word, ' ');
                group.push_back(CBoundedString(word));
            }
            Groups.push_back(group);
        }
        piece = nextPiece;
    }
    return Groups.empty() ? 0 : 1;
}

int CCommandLine::Find(const char *key) const
{
    for (const CCommandGroup &group : Groups)
        if (group.front().Equals(key))
            return static_cast<int>(group.size()) - 1;
    return -1;
}

namespace {

// Writes every value of the groups with that key into scratch, each followed
// by the separator; the last separator becomes a NUL and one more NUL
// follows. Gives the length so written, 0 for no values.
unsigned JoinValues(const std::list<CCommandGroup> &groups, const char *key, char separator, char *scratch)
{
    unsigned used = 0;
    for (const CCommandGroup &group : groups) {
        if (group.size() < 2 || !group.front().Equals(key))
            continue;
        CCommandGroup::const_iterator value = group.begin();
        for (++value; value != group.end(); ++value) {
            size_t n = value->Length();
            // Room for this value, its separator and the closing NUL.
            if (used + n + 2 > CCommandLine::ScratchSize)
                break;
            std::memcpy(scratch + used, value->Text, n);
            used += static_cast<unsigned>(n);
            scratch[used++] = separator;
        }
    }
    if (!used)
        return 0;
    scratch[used - 1] = 0;
    scratch[used] = 0;
    return used + 1;
}

}  // namespace

int CCommandLine::GetValues(const char *key, char *out, unsigned size, unsigned *length, char separator) const
{
    if (!key || !*key)
        return 0;
    std::vector<char> scratch;
    try {
        scratch.resize(ScratchSize);
    } catch (const std::bad_alloc &) {
        return 0;
    }
    unsigned total = JoinValues(Groups, key, separator, scratch.data());
    int copied = 0;
    if (out && total && total < size) {
        std::memcpy(out, scratch.data(), total);
        copied = 1;
    }
    if (length)
        *length = total;
    return copied;
}
