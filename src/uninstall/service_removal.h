// The services of the record's "services" part: each stopped, within a
// bounded wait, then deleted.
#ifndef TOVREL_UNINSTALL_SERVICE_REMOVAL_H
#define TOVREL_UNINSTALL_SERVICE_REMOVAL_H

#include "uninstall/uninstall_run.h"

void RemoveServices(CUninstallRun &run);

#endif
