// Whether a path or a name from the record is one the install could have
// written: the record may have been changed by any hand since, and nothing
// is taken back on a value that could lead elsewhere. No <windows.h> here.
#ifndef TOVREL_UNINSTALL_PATH_CHECKS_H
#define TOVREL_UNINSTALL_PATH_CHECKS_H

#include <string>

// Empty text for a full path of a file on a drive, within 259 characters;
// otherwise why it is refused.
std::string RefusalOfPath(const std::string &path);
// The same for one file or folder name: no separator, colon, device name,
// or name of dots and blanks only.
std::string RefusalOfName(const std::string &name);

#endif
