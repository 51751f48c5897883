// Whose data the report reads where a path or a key depends on the user:
// HKCU and the shell folders of a profile are those of the user who runs
// the report, not necessarily of the one who ran the install.
#ifndef TOVREL_REPORT_CURRENT_USER_H
#define TOVREL_REPORT_CURRENT_USER_H

#include <string>

// "; in the hive of user NAME", or the like for a profile.
std::string InUserHive();
std::string InUserProfile();

#endif
