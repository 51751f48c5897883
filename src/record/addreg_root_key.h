// The open root key that a registry line's first field names.
#ifndef TOVREL_RECORD_ADDREG_ROOT_KEY_H
#define TOVREL_RECORD_ADDREG_ROOT_KEY_H

#include <windows.h>

#include "record/addreg_line.h"

// NULL for a root that the install does not know.
HKEY AddRegRootKey(AddRegRoot root);

#endif
