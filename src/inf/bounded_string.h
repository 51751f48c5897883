// The one value type for names, paths and values: a fixed 260-byte buffer,
// no heap, copied freely. Free functions cut and trim such text in place.
#ifndef TOVREL_INF_BOUNDED_STRING_H
#define TOVREL_INF_BOUNDED_STRING_H

#include <cstddef>

class CBoundedString {
public:
    enum { Capacity = 260, MaxLength = Capacity - 1 };

    CBoundedString();
    CBoundedString(const char *source);

    CBoundedString &Assign(const CBoundedString &source);
    // Text past MaxLength is dropped: the buffer never overruns.
    CBoundedString &Append(const char *source);

    // Every comparison ignores case, as CompareNoCase does.
    int Equals(const char *other) const;
    int Differs(const char *other) const { return !Equals(other); }
    int Compare(const char *left, const char *right) const;

    bool IsEmpty() const { return Text[0] == 0; }
    size_t Length() const;

    operator char *() { return Text; }
    operator const char *() const { return Text; }

    char Text[Capacity];
};

// Ordering of every map keyed by a CBoundedString.
struct CBoundedStringLess {
    bool operator()(const CBoundedString &left, const CBoundedString &right) const
    {
        return left.Compare(left.Text, right.Text) < 0;
    }
};

// Case is folded for A to Z only, bytes compared unsigned, no locale.
int CompareNoCase(const char *left, const char *right);
// A hash of the text with case folded as CompareNoCase folds it.
size_t HashNoCase(const char *text);

// Hashed containers keyed by plain text, case ignored.
struct CNoCaseHash {
    size_t operator()(const char *text) const { return HashNoCase(text); }
};
struct CNoCaseEqual {
    bool operator()(const char *left, const char *right) const { return CompareNoCase(left, right) == 0; }
};

// Copies at most size-1 characters and always terminates (size > 0).
void CopyBounded(char *target, const char *source, size_t size);

char *StripChar(char *text, char c);
char *StripLast(char *text, char c);
char *StripFirst(char *text, char c);
char *StripOne(char *text, char c);
char *NextToken(char *text, char delimiter);
char *NextQuotedToken(char *text, char delimiter);

#endif
