// Which family of Windows runs the program, and the spooler's environment
// that its drivers live in for this build.
#ifndef TOVREL_RECORD_SYSTEM_FAMILY_H
#define TOVREL_RECORD_SYSTEM_FAMILY_H

bool IsNtFamily();
const char *NativeEnvironment();

#endif
