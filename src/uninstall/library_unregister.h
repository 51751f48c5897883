// The libraries of the record's "unregister" part: each one's
// DllUnregisterServer called from where the install loaded it, while the
// file is still there.
#ifndef TOVREL_UNINSTALL_LIBRARY_UNREGISTER_H
#define TOVREL_UNINSTALL_LIBRARY_UNREGISTER_H

#include "uninstall/uninstall_run.h"

void UnregisterLibraries(CUninstallRun &run);

#endif
