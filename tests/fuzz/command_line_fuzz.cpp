// The command-line grammar and the joining of a key's values, with every
// separator the system uses and out-buffers of every size up to the usual 260.
#include <cstring>
#include <vector>

#include "entry/command_line.h"
#include "fuzz_input.h"

namespace {

const char Separators[] = {' ', '\0', ','};

bool IsBreak(char c) { return c == 0 || c == ' ' || c == '/'; }

// A word the grammar gives must stand whole in the text: a cut word would be
// another name.
bool StandsWhole(const std::string &text, const char *word)
{
    size_t n = std::strlen(word);
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        bool opens = at == 0 || IsBreak(text[at - 1]);
        if (opens && IsBreak(at + n < text.size() ? text[at + n] : 0))
            return true;
    }
    return false;
}

void CheckValues(const CCommandLine &line, const char *key, unsigned size, char separator)
{
    std::vector<char> out(size, 'x');
    unsigned length = ~0u;
    int copied = line.GetValues(key, out.data(), size, &length, separator);
    FUZZ_CHECK(length <= CCommandLine::ScratchSize);
    if (copied) {
        FUZZ_CHECK(length >= 2 && length < size);
        FUZZ_CHECK(out[length - 1] == 0 && out[length - 2] == 0);
    } else {
        FUZZ_CHECK(length == 0 || length >= size);
        for (char c : out)
            FUZZ_CHECK(c == 'x');
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    CFuzzInput input(data, size);
    char separator = Separators[input.Byte() % sizeof Separators];
    unsigned outSize = input.Byte() % CBoundedString::Capacity + 1;
    std::string text = input.Rest();
    if (text.empty())
        return 0;  // that would read the fuzzer's own command line

    CCommandLine line;
    int parsed = line.Parse(text.c_str());
    FUZZ_CHECK(parsed == (line.Groups.empty() ? 0 : 1));
    for (const CCommandGroup &group : line.Groups) {
        FUZZ_CHECK(!group.empty() && !group.front().IsEmpty());
        FUZZ_CHECK(line.Find(group.front()) >= 0);
        for (const CBoundedString &word : group)
            FUZZ_CHECK(word.IsEmpty() || StandsWhole(text, word.Text));
        CheckValues(line, group.front(), outSize, separator);
        CheckValues(line, group.front(), CBoundedString::Capacity, separator);
    }
    return 0;
}
