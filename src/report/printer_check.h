// The printers that use the model's driver: their mark, and their names and
// ports as at the baseline.
#ifndef TOVREL_REPORT_PRINTER_CHECK_H
#define TOVREL_REPORT_PRINTER_CHECK_H

#include <string>

#include "report/baseline_store.h"
#include "report/report_item.h"

void CheckPrintersOfModel(const std::string &model, const CBaseline &baseline, ReportItems &items);

#endif
