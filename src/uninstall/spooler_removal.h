// The first steps of an uninstall, on this machine's spooler: the printers
// on the model's driver, the driver in every environment, then the
// language monitor and the print processor that the record names, each
// only when nothing else uses it.
#ifndef TOVREL_UNINSTALL_SPOOLER_REMOVAL_H
#define TOVREL_UNINSTALL_SPOOLER_REMOVAL_H

#include <string>
#include <vector>

#include "uninstall/uninstall_run.h"

void RemovePrinters(CUninstallRun &run);
// The local printers on the model's driver; false when the spooler cannot
// list its printers.
bool PrintersOnDriver(const std::string &model, std::vector<std::string> &names);
void RemoveDrivers(CUninstallRun &run);
void RemoveMonitor(CUninstallRun &run);
void RemoveProcessor(CUninstallRun &run);

#endif
