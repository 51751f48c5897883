// The model's driver in the spooler's environment for this system, and the
// model values of the record against what the spooler holds.
#ifndef TOVREL_REPORT_DRIVER_CHECK_H
#define TOVREL_REPORT_DRIVER_CHECK_H

#include "record/uninstall_record.h"
#include "report/driver_record.h"
#include "report/report_item.h"

void CheckDriverAndModelValues(const UninstallRecord &record, const DriverRecord &driver, ReportItems &items);

#endif
