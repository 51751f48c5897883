// The install's own temporary names: "~tvr" and sixteen hexadecimal digits
// of a random number, with ".tmp" for a file written beside its target and
// with nothing more for a work directory in %TEMP%. Whatever a killed run
// left is recognised by that shape alone.
#ifndef TOVREL_FILES_TEMP_NAMES_H
#define TOVREL_FILES_TEMP_NAMES_H

#include <string>

extern const char TempNamePrefix[];
extern const char StagedFileSuffix[];

// 64 bits from the system's random source; on a system without one (the 9x
// family), a mix of clocks and ids, which nobody can set in advance either.
unsigned long long RandomPart();
// A fresh name in directory, which ends in a separator.
std::string TempName(const std::string &directory, const char *suffix);
// True when a file name has the shape of TempName's names with this suffix.
bool IsTempName(const char *name, const char *suffix);

#endif
