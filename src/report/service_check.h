// The services of a record: installed, how they start, whether they run.
#ifndef TOVREL_REPORT_SERVICE_CHECK_H
#define TOVREL_REPORT_SERVICE_CHECK_H

#include <string>

#include "report/report_item.h"

ReportItem CheckService(const std::string &name);

#endif
