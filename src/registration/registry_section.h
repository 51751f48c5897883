// The AddReg interpreter: each line of the model's AddReg section is one
// registry value, written as it stands.
#ifndef TOVREL_REGISTRATION_REGISTRY_SECTION_H
#define TOVREL_REGISTRATION_REGISTRY_SECTION_H

#include <windows.h>

// The installer's own flag: the value is the bare name of an installed file,
// to be replaced by the full path under which it was installed.
enum { AddRegInstalledFileFlag = 0x1000 };

// Lower-case "0x" reads base 16; anything else reads as atol does.
unsigned long ReadAddRegFlags(const char *text);
// The registry type that the flags select through the type bits.
DWORD AddRegValueType(unsigned long flags);
// Sets *root and gives true when the text is one of the root keywords.
bool ReadAddRegRoot(const char *text, HKEY *root);

#endif
