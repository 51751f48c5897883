// The command syntax behind Service_RunDll_Create: which key fills which
// field of the creation record.
#ifndef TOVREL_SERVICE_SERVICE_EXPORTS_H
#define TOVREL_SERVICE_SERVICE_EXPORTS_H

#include "tovrel.h"

// Decimal only: optional blanks and sign, then digits up to the first other
// character; "0x10" and a quoted number give 0.
DWORD ParseServiceNumber(const char *text);

// Turns the first two commas behind names into NULs: "a,b,c" becomes the
// list a, b, c; a fourth name stays joined to the third.
void SplitDependencies(char *text);

#endif
