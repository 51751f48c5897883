#include "report/report_item.h"

#include <algorithm>

#include "record/text_compare.h"

const char RecordKind[] = "record";
const char *const ItemKinds[] = {RecordKind, "model", "file", "registry", "service", "shortcut",
                                 "library", "driver", "printer"};
const int ItemKindCount = sizeof(ItemKinds) / sizeof(ItemKinds[0]);

ReportItem MakeItem(const char *kind, const std::string &subject, ItemState state,
                    const std::string &detail)
{
    ReportItem item;
    item.Kind = kind;
    item.Subject = subject;
    item.State = state;
    item.Detail = detail;
    return item;
}

const char *StateName(ItemState state)
{
    switch (state) {
    case ItemState::Held: return "held";
    case ItemState::Drifted: return "drifted";
    case ItemState::Pending: return "pending";
    case ItemState::Unchecked: return "unchecked";
    }
    return "unchecked";
}

static int KindRank(const std::string &kind)
{
    for (int rank = 0; rank < ItemKindCount; ++rank)
        if (kind == ItemKinds[rank])
            return rank;
    return ItemKindCount;
}

void SortItems(ReportItems &items)
{
    std::stable_sort(items.begin(), items.end(), [](const ReportItem &a, const ReportItem &b) {
        int rankA = KindRank(a.Kind), rankB = KindRank(b.Kind);
        if (rankA != rankB)
            return rankA < rankB;
        int order = CompareNoCase(a.Subject, b.Subject);
        return order != 0 ? order < 0 : a.Subject < b.Subject;
    });
}
