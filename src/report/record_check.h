// Every item of a record checked against the machine and the baseline, and
// the tally.
#ifndef TOVREL_REPORT_RECORD_CHECK_H
#define TOVREL_REPORT_RECORD_CHECK_H

#include "record/uninstall_record.h"
#include "report/baseline_store.h"
#include "report/report_item.h"

struct ReportTally {
    int Items = 0, Held = 0, Drifted = 0, Pending = 0, Unchecked = 0;
    bool Incomplete = false;  // part of the record or the baseline could not be read
};

// The items in their fixed order.
ReportItems CheckRecord(const UninstallRecord &record, const CBaseline &baseline);
ReportTally TallyItems(const ReportItems &items);

#endif
