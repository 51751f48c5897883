// The tokeniser of slash-key-value command lines: "/KEY value value /KEY2 ...".
// A slash opens a group, the first word of a group is its key, the further
// words its values; double quotes hide blanks and slashes and stay in place.
#ifndef TOVREL_ENTRY_COMMAND_LINE_H
#define TOVREL_ENTRY_COMMAND_LINE_H

#include <list>

#include "inf/bounded_string.h"

typedef std::list<CBoundedString> CCommandGroup;

class CCommandLine {
public:
    enum { ScratchSize = 4096 };

    CCommandLine() {}
    explicit CCommandLine(const char *text) { Parse(text); }

    // A null or empty text means the process's own command line. A text over
    // 259 characters gives no groups.
    int Parse(const char *text);
    // Values of the first group with that key, or -1 if no group has it.
    int Find(const char *key) const;
    // Joins the values of every group with that key, each followed by the
    // separator; the last separator becomes a NUL and one more NUL follows.
    // *length gets that total (values, separators, one) whenever key is given.
    int GetValues(const char *key, char *out, unsigned size, unsigned *length, char separator) const;

    std::list<CCommandGroup> Groups;
    CBoundedString Text;
};

// The command line the process was started with; never null. Lives apart
// from the tokeniser because it asks the operating system.
const char *ProcessCommandLine();

#endif
