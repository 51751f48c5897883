// The printers that use the model's driver: their port and their mark.
#ifndef TOVREL_REPORT_PRINTER_CHECK_H
#define TOVREL_REPORT_PRINTER_CHECK_H

#include <string>

#include "report/report_item.h"

void CheckPrintersOfModel(const std::string &model, ReportItems &items);

#endif
