// The spooler's environments that a driver of a model may be installed in:
// the 9x family's, and those of NT for each processor.
#ifndef TOVREL_UNINSTALL_SPOOLER_ENVIRONMENTS_H
#define TOVREL_UNINSTALL_SPOOLER_ENVIRONMENTS_H

#include <windows.h>
#include <winspool.h>

#include <string>
#include <vector>

#include "record/spooler_lists.h"

extern const char *const SpoolerEnvironments[];
extern const int SpoolerEnvironmentCount;

// False, with the spooler's code in error, when an environment that this
// spooler knows cannot be listed; one it does not know has no drivers.
bool ListEnvironmentDrivers(const char *environment, SpoolerList<DRIVER_INFO_3A> &drivers, DWORD &error);
// Text of a field of a spooler record, which may be null.
std::string SpoolerText(const char *text);
// The full paths of a driver's files; a dependent file named without a
// directory lies where the driver's own file does.
std::vector<std::string> DriverFiles(const DRIVER_INFO_3A &driver);

#endif
