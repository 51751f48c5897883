// Whose data a program reads where a path or a key depends on the user:
// HKCU and the shell folders of a profile are those of the user who runs
// it, not necessarily of the one who ran the install.
#ifndef TOVREL_RECORD_CURRENT_USER_H
#define TOVREL_RECORD_CURRENT_USER_H

#include <string>

// "; in the hive of user NAME", or the like for a profile.
std::string InUserHive();
std::string InUserProfile();

#endif
