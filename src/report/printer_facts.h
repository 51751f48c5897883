// The local printers as the spooler lists them, and the mark the install
// leaves in a printer's data.
#ifndef TOVREL_REPORT_PRINTER_FACTS_H
#define TOVREL_REPORT_PRINTER_FACTS_H

#include <string>
#include <vector>

struct PrinterFacts {
    std::string Name, Port, Driver;
};

// False when the spooler cannot list them.
bool ReadLocalPrinters(std::vector<PrinterFacts> &printers);
// The printers whose driver is the model.
std::vector<PrinterFacts> PrintersOfModel(const std::vector<PrinterFacts> &printers, const std::string &model);
// True when the printer holds the mark as the install writes it; shown says
// what stands there, "IsPlenarcValid 1" or what stands in its place.
bool ReadPrinterMark(const std::string &printer, std::string &shown);

#endif
