// The steps of an uninstall in their order: what uses a thing goes before
// the thing, so the spooler's items lead and the files follow the
// services and libraries that held them; the record goes last.
#ifndef TOVREL_UNINSTALL_UNINSTALL_STEPS_H
#define TOVREL_UNINSTALL_UNINSTALL_STEPS_H

#include "uninstall/uninstall_run.h"

// Each part of the record in the order of its names, whatever order the
// registry keeps, so that a run tells of its items in one order.
void SortRecord(UninstallRecord &record);
void TakeBack(CUninstallRun &run);

#endif
