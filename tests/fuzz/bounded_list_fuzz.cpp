// CBoundedString fed long text in pieces, the strip functions, and list
// walks with NextToken and NextQuotedToken over any delimiter.
#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz_input.h"
#include "inf/bounded_string.h"

namespace {

void CheckAppend(const std::string &text, size_t chunk)
{
    CBoundedString pieces;
    for (size_t at = 0; at < text.size(); at += chunk)
        pieces.Append(text.substr(at, chunk).c_str());
    size_t kept = std::min<size_t>(text.size(), CBoundedString::MaxLength);
    FUZZ_CHECK(pieces.Length() == kept && pieces.Text[CBoundedString::MaxLength] == 0);
    FUZZ_CHECK(text.compare(0, kept, pieces.Text) == 0);
    CBoundedString whole(text.c_str());
    FUZZ_CHECK(std::strcmp(whole, pieces) == 0);
    CBoundedString copy;
    copy.Assign(whole).Assign(copy).Append(whole);
    FUZZ_CHECK(copy.Length() == std::min<size_t>(2 * kept, CBoundedString::MaxLength));
    FUZZ_CHECK(whole.Compare(whole, copy) == -whole.Compare(copy, whole));
}

void CheckStrips(const CBoundedString &source, char c)
{
    size_t n = source.Length();
    CBoundedString all(source), last(source), first(source), one(source);
    StripChar(all, c);
    size_t left = all.Length();
    FUZZ_CHECK(!left || (all.Text[0] != c && all.Text[left - 1] != c) || !c);
    FUZZ_CHECK(std::strstr(source.Text, all.Text));
    StripLast(last, c);
    FUZZ_CHECK(n - last.Length() <= 1);
    StripFirst(first, c);
    FUZZ_CHECK(n - first.Length() <= 1 && (first.Length() || !n));
    StripOne(one, c);
    FUZZ_CHECK(n - one.Length() <= 2);
}

typedef char *(*Cutter)(char *text, char delimiter);

// Walks the list and checks that every piece lies inside it and that the
// pieces and the cut delimiters make up the text again.
void CheckWalk(const CBoundedString &source, char delimiter, Cutter cut)
{
    std::vector<char> list(source.Text, source.Text + source.Length());
    list.insert(list.end(), {'\0', '\0'});
    if (!delimiter)
        std::replace(list.begin(), list.end(), ',', '\0');  // a list of NUL-terminated strings
    std::string joined;
    char *piece = list.data();
    for (;;) {
        char *next = cut(piece, delimiter);
        FUZZ_CHECK(!next || (next > piece && next < list.data() + list.size()));
        joined += piece;
        if (!next)
            break;
        joined += delimiter ? delimiter : '\0';
        if (cut == NextQuotedToken && delimiter)
            FUZZ_CHECK(std::count(piece, piece + std::strlen(piece), '"') % 2 == 0);
        piece = next;
    }
    if (delimiter)
        FUZZ_CHECK(joined == source.Text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    CFuzzInput input(data, size);
    char delimiter = static_cast<char>(input.Byte());
    char strip = static_cast<char>(input.Byte());
    size_t chunk = input.Byte() % 64 + 1;
    std::string text = input.Rest();

    CheckAppend(text, chunk);
    CBoundedString source(text.c_str());
    CheckStrips(source, strip);
    CheckWalk(source, delimiter, NextToken);
    CheckWalk(source, delimiter, NextQuotedToken);
    return 0;
}
