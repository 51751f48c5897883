// The lines of the record's "registry" part: the value each line wrote is
// deleted, then the line's own key if that leaves it empty, and nothing
// above it.
#ifndef TOVREL_UNINSTALL_REGISTRY_REMOVAL_H
#define TOVREL_UNINSTALL_REGISTRY_REMOVAL_H

#include "uninstall/uninstall_run.h"

void RemoveRegistryLines(CUninstallRun &run);

#endif
