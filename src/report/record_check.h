// Every item of a record checked against the machine, and the tally.
#ifndef TOVREL_REPORT_RECORD_CHECK_H
#define TOVREL_REPORT_RECORD_CHECK_H

#include "report/report_item.h"
#include "report/uninstall_record.h"

struct ReportTally {
    int Items = 0, Held = 0, Drifted = 0, Pending = 0, Unchecked = 0;
};

// The items in their fixed order.
ReportItems CheckRecord(const UninstallRecord &record);
ReportTally TallyItems(const ReportItems &items);

#endif
