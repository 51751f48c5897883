// Handing the print processor, language monitor and printer driver to the
// spooler. The stages are operations of CPrinterInf; these are their parts
// that stand on their own.
#ifndef TOVREL_REGISTRATION_DRIVER_REGISTRATION_H
#define TOVREL_REGISTRATION_DRIVER_REGISTRATION_H

#include <windows.h>

#include "files/file_spec.h"
#include "inf/os_version.h"

// cVersion and pEnvironment of a driver new to the spooler on that system.
DWORD NewDriverVersion(const COsVersion &os);
const char *NewDriverEnvironment(const COsVersion &os);

// Compares a file field of the spooler's record with the INF's bare file
// name. A stored full path keeps its directory and takes the new name, which
// `spec` then holds. Gives the text the field must point at, or null when
// nothing changed.
const char *UpdatedDriverFile(const char *stored, const char *file, CFileSpec &spec);

#endif
