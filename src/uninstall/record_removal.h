// The last step: the model's key of the uninstall tree, and the report's
// baseline of the model with it, once nothing that the record names is
// left but what waits for the restart or stays for another's sake.
#ifndef TOVREL_UNINSTALL_RECORD_REMOVAL_H
#define TOVREL_UNINSTALL_RECORD_REMOVAL_H

#include "uninstall/uninstall_run.h"

void RemoveRecord(CUninstallRun &run);

#endif
