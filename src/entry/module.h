// The library's own module handle, for its resources and its file name.
#ifndef TOVREL_ENTRY_MODULE_H
#define TOVREL_ENTRY_MODULE_H

#include <windows.h>

void SetModuleInstance(HINSTANCE instance);
// Null when the code runs outside the DLL (a test program): the resources
// and file name are then the process's own.
HINSTANCE GetModuleInstance();

#endif
