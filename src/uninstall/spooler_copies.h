// The spooler's own copies of a driver's files: the spooler takes the
// files that an install names to it from the driver directory into a
// directory of its own (on Windows NT the version directory, and under
// Wine on the 9x family too), where the record does not follow them.
#ifndef TOVREL_UNINSTALL_SPOOLER_COPIES_H
#define TOVREL_UNINSTALL_SPOOLER_COPIES_H

#include <vector>

#include "record/uninstall_record.h"
#include "uninstall/file_removal.h"
#include "uninstall/spooler_environments.h"

// The files of the model's drivers in that environment that the record
// does not name but whose namesake in the driver directory it does.
std::vector<UnrecordedFile> SpoolerCopies(const UninstallRecord &record, const char *environment,
                                          const SpoolerList<DRIVER_INFO_3A> &drivers);

#endif
