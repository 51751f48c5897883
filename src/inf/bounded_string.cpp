#include "inf/bounded_string.h"

#include <cstring>

namespace {

inline unsigned char FoldAscii(unsigned char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

const char *OrEmpty(const char *text) { return text ? text : ""; }

}  // namespace

int CompareNoCase(const char *left, const char *right)
{
    const unsigned char *l = reinterpret_cast<const unsigned char *>(OrEmpty(left));
    const unsigned char *r = reinterpret_cast<const unsigned char *>(OrEmpty(right));
    for (;; ++l, ++r) {
        unsigned char a = FoldAscii(*l), b = FoldAscii(*r);
        if (a != b)
            return a < b ? -1 : 1;
        if (!a)
            return 0;
    }
}

size_t HashNoCase(const char *text)
{
    // FNV-1a over the folded bytes.
    const size_t Basis = static_cast<size_t>(2166136261u), Prime = 16777619u;
    size_t hash = Basis;
    for (const unsigned char *c = reinterpret_cast<const unsigned char *>(OrEmpty(text)); *c; ++c)
        hash = (hash ^ FoldAscii(*c)) * Prime;
    return hash;
}

void CopyBounded(char *target, const char *source, size_t size)
{
    if (!target || !size)
        return;
    size_t n = 0;
    if (source)
        while (n + 1 < size && source[n])
            ++n;
    if (n)
        std::memmove(target, source, n);
    target[n] = 0;
}

CBoundedString::CBoundedString()
{
    std::memset(Text, 0, sizeof Text);
}

CBoundedString::CBoundedString(const char *source) : CBoundedString()
{
    Append(source);
}

CBoundedString &CBoundedString::Assign(const CBoundedString &source)
{
    if (&source == this)
        return *this;
    std::memset(Text, 0, sizeof Text);
    CopyBounded(Text, source.Text, sizeof Text);
    return *this;
}

CBoundedString &CBoundedString::Append(const char *source)
{
    if (!source || !*source)
        return *this;
    size_t used = Length();
    // The source may be our own buffer: CopyBounded moves, never overlaps badly.
    CopyBounded(Text + used, source, sizeof Text - used);
    return *this;
}

size_t CBoundedString::Length() const
{
    size_t n = 0;
    while (n < MaxLength && Text[n])
        ++n;
    return n;
}

int CBoundedString::Equals(const char *other) const
{
    return Compare(Text, other) == 0;
}

int CBoundedString::Compare(const char *left, const char *right) const
{
    return CompareNoCase(left, right);
}

char *StripChar(char *text, char c)
{
    if (!text || !*text)
        return text;
    size_t length = std::strlen(text);
    while (length && text[length - 1] == c)
        text[--length] = 0;
    size_t lead = 0;
    while (lead < length && text[lead] == c)
        ++lead;
    if (lead)
        std::memmove(text, text + lead, length - lead + 1);
    return text;
}

char *StripLast(char *text, char c)
{
    if (!text || !*text)
        return text;
    size_t length = std::strlen(text);
    if (text[length - 1] == c)
        text[length - 1] = 0;
    return text;
}

char *StripFirst(char *text, char c)
{
    if (!text || text[0] != c || text[1] == 0)
        return text;
    std::memmove(text, text + 1, std::strlen(text));
    return text;
}

char *StripOne(char *text, char c)
{
    return StripFirst(StripLast(text, c), c);
}

char *NextToken(char *text, char delimiter)
{
    if (!text || !*text)
        return nullptr;
    if (!delimiter) {
        char *next = text + std::strlen(text) + 1;
        return *next ? next : nullptr;
    }
    char *at = std::strchr(text, delimiter);
    if (!at)
        return nullptr;
    *at = 0;
    return at + 1;
}

char *NextQuotedToken(char *text, char delimiter)
{
    if (!delimiter)
        return NextToken(text, delimiter);
    if (!text || !*text)
        return nullptr;
    bool quoted = false;
    for (char *p = text; *p; ++p) {
        if (*p == '"')
            quoted = !quoted;
        else if (*p == delimiter && !quoted) {
            *p = 0;
            return p + 1;
        }
    }
    return nullptr;
}
