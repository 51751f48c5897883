// The lines of the record's "Shortcuts" part: each line's link, then its
// group folder if that leaves it empty.
#ifndef TOVREL_UNINSTALL_SHORTCUT_REMOVAL_H
#define TOVREL_UNINSTALL_SHORTCUT_REMOVAL_H

#include "uninstall/uninstall_run.h"

void RemoveShortcuts(CUninstallRun &run);

#endif
