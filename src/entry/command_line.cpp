#include "entry/command_line.h"

#include <cstring>
#include <new>

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

int CCommandLine::GetValues(const char *key, char *out, unsigned size, unsigned *length, char separator) const
{
    if (!key || !*key)
        return 0;
    char *scratch = new (std::nothrow) char[ScratchSize];
    if (!scratch)
        return 0;
    unsigned used = 0;
    for (const CCommandGroup &group : Groups) {
        if (group.size() < 2 || !group.front().Equals(key))
            continue;
        CCommandGroup::const_iterator value = group.begin();
        for (++value; value != group.end(); ++value) {
            size_t n = value->Length();
            // Room for this value, its separator and the closing NUL.
            if (used + n + 2 > ScratchSize)
                break;
            std::memcpy(scratch + used, value->Text, n);
            used += static_cast<unsigned>(n);
            scratch[used++] = separator;
        }
    }
    unsigned total = 0;
    if (used) {
        scratch[used - 1] = 0;
        scratch[used] = 0;
        total = used + 1;
    }
    int copied = 0;
    if (out && total && total < size) {
        std::memcpy(out, scratch, total);
        copied = 1;
    }
    if (length)
        *length = total;
    delete[] scratch;
    return copied;
}
