// One item of an uninstall, what became of it, and the tally of a run.
#ifndef TOVREL_UNINSTALL_UNINSTALL_ITEM_H
#define TOVREL_UNINSTALL_UNINSTALL_ITEM_H

#include <string>

enum class Outcome {
    Removed,  // gone, and checked to be gone
    Pending,  // goes at the next restart, and the restart's list says so
    Shared,   // kept: something else still uses it
    Absent,   // was not there, or there was nothing to take back
    Failed,   // still there; the detail says why
    Refused,  // the record's value is nothing the install could have written: kept
    Planned   // --what-if: would be taken back
};

struct UninstallItem {
    std::string Kind;     // what sort of thing: printer, driver, file ...
    std::string Subject;  // the name, line or path that the record gives
    Outcome State;
    std::string Detail;   // what was found or done, in words
};

struct UninstallTally {
    int Items = 0, Removed = 0, Pending = 0, Shared = 0, Absent = 0, Failed = 0, Refused = 0, Planned = 0;
    void Count(Outcome state);
    // Nothing failed or was refused: the record can go.
    bool Complete() const { return Failed == 0 && Refused == 0; }
};

UninstallItem MakeItem(const char *kind, const std::string &subject, Outcome state, const std::string &detail);
// As the JSON form names the outcome.
const char *OutcomeName(Outcome state);
// As the lines for a person name it.
const char *OutcomeWords(Outcome state);

#endif
