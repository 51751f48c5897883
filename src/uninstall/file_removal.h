// The files of the record's "files" part: deleted, or at the next restart
// when busy; a file that another model or driver still uses stays.
#ifndef TOVREL_UNINSTALL_FILE_REMOVAL_H
#define TOVREL_UNINSTALL_FILE_REMOVAL_H

#include "uninstall/uninstall_run.h"

void RemoveFiles(CUninstallRun &run);

#endif
