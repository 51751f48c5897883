// One model value of a record against the spooler: the driver's files and
// data type, the language monitor, the print processor.
#ifndef TOVREL_REPORT_MODEL_VALUE_CHECK_H
#define TOVREL_REPORT_MODEL_VALUE_CHECK_H

#include "record/registry_read.h"
#include "record/uninstall_record.h"
#include "report/driver_record.h"
#include "report/report_item.h"

// record: for the values that are judged together with another of the model.
ReportItem CheckModelValue(const NamedValue &value, const DriverRecord &driver, const UninstallRecord &record);

#endif
