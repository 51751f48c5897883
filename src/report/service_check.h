// The services of a record: installed, how they start, whether they run,
// and their binary and start type as at the baseline.
#ifndef TOVREL_REPORT_SERVICE_CHECK_H
#define TOVREL_REPORT_SERVICE_CHECK_H

#include <string>

#include "report/baseline_store.h"
#include "report/report_item.h"

ReportItem CheckService(const std::string &name, const CBaseline &baseline);

#endif
