#include "uninstall/uninstall_item.h"

UninstallItem MakeItem(const char *kind, const std::string &subject, Outcome state, const std::string &detail)
{
    UninstallItem item;
    item.Kind = kind;
    item.Subject = subject;
    item.State = state;
    item.Detail = detail;
    return item;
}

void UninstallTally::Count(Outcome state)
{
    ++Items;
    switch (state) {
    case Outcome::Removed: ++Removed; break;
    case Outcome::Pending: ++Pending; break;
    case Outcome::Shared: ++Shared; break;
    case Outcome::Absent: ++Absent; break;
    case Outcome::Failed: ++Failed; break;
    case Outcome::Refused: ++Refused; break;
    case Outcome::Planned: ++Planned; break;
    }
}

const char *OutcomeName(Outcome state)
{
    switch (state) {
    case Outcome::Removed: return "removed";
    case Outcome::Pending: return "pending";
    case Outcome::Shared: return "shared";
    case Outcome::Absent: return "absent";
    case Outcome::Failed: return "failed";
    case Outcome::Refused: return "refused";
    case Outcome::Planned: return "planned";
    }
    return "failed";
}

const char *OutcomeWords(Outcome state)
{
    switch (state) {
    case Outcome::Removed: return "removed";
    case Outcome::Pending: return "PENDING RESTART";
    case Outcome::Shared: return "shared, kept";
    case Outcome::Absent: return "absent already";
    case Outcome::Failed: return "FAILED";
    case Outcome::Refused: return "REFUSED, kept";
    case Outcome::Planned: return "would be removed";
    }
    return "FAILED";
}
