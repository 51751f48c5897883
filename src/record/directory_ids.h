// The numbered directories that an INF names in its shortcut lines, found
// on this machine as the install finds them.
#ifndef TOVREL_RECORD_DIRECTORY_IDS_H
#define TOVREL_RECORD_DIRECTORY_IDS_H

#include <string>

enum class DirectoryLookup {
    Found,      // path holds the directory, with a backslash at its end, or empty text
    NotKnown,   // the id is none of the INF's directory ids
    Unknowable  // the id depends on what the record does not keep
};

DirectoryLookup ResolveInfDirectory(long infId, std::string &path);
// True for the directories of the current user's own profile, as against
// the machine's.
bool InfDirectoryIsPerUser(long infId);
// The Programs folder of the current user's Start menu.
std::string ProgramsDirectory();

#endif
