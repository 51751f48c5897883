// The local print spooler as the installer uses it: every call goes to this
// machine (null server name).
#ifndef TOVREL_REGISTRATION_SPOOLER_H
#define TOVREL_REGISTRATION_SPOOLER_H

#include <windows.h>
#include <winspool.h>

// The 9x family's environment, whose drivers an NT machine can also hold.
extern const char *const Windows9xEnvironment;  // "Windows 4.0"

// Directory where the spooler keeps drivers of the environment (null: this
// machine's own), into a 260-byte buffer. 1 on success; on failure `out` is
// empty and 0 is given.
int PrinterDriverDirectory(const char *environment, char *out);

// Directory of this machine's print processors, the same way.
int PrintProcessorDirectory(char *out);

#endif
