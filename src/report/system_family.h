// Which family of Windows runs the report, and the spooler's environment
// that its drivers live in for this build.
#ifndef TOVREL_REPORT_SYSTEM_FAMILY_H
#define TOVREL_REPORT_SYSTEM_FAMILY_H

bool IsNtFamily();
const char *NativeEnvironment();

#endif
