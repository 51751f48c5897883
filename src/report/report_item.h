// One checked item of an installation record, and the verdicts it can have.
#ifndef TOVREL_REPORT_REPORT_ITEM_H
#define TOVREL_REPORT_REPORT_ITEM_H

#include <string>
#include <vector>

enum class ItemState {
    Held,      // the machine is as the record says
    Drifted,   // it is not
    Pending,   // it will be, or will not be, only after a restart
    Unchecked  // the report has no way to tell
};

struct ReportItem {
    std::string Kind;     // one of the kinds below, in their order of output
    std::string Subject;  // the path, line, name or value that the record gives
    ItemState State;
    std::string Detail;   // what was found, in words
};

typedef std::vector<ReportItem> ReportItems;

// A state and the words that say why, to follow what was found.
struct Verdict {
    ItemState State;
    std::string Text;
};

// The kinds, in the order in which the report lists them. Items of the
// first, RecordKind, say what of the record or the baseline the report
// could not read.
extern const char RecordKind[];
extern const char *const ItemKinds[];
extern const int ItemKindCount;

ReportItem MakeItem(const char *kind, const std::string &subject, ItemState state,
                    const std::string &detail);
const char *StateName(ItemState state);

// Puts the items in their fixed order: kind, then subject without regard to case.
void SortItems(ReportItems &items);

#endif
