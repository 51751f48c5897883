// Renames and deletions that wait for the next restart: the NT delayed-move
// list in the registry, and the RENAME section of WININIT.INI that the 9x
// family carries out at its start.
#ifndef TOVREL_FILES_PENDING_RENAMES_H
#define TOVREL_FILES_PENDING_RENAMES_H

#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "files/path_parts.h"

typedef std::set<std::string, CPathLess> CPathSet;

// Every path that a waiting rename or deletion names, as source or target.
CPathSet PendingRenamePaths();

// WININIT.INI in the Windows directory; empty when that path does not fit.
std::string WininitPath();
// The RENAME section of the profile at path, read into a buffer that also
// has room for extra more characters and two NULs behind its lines; used is
// the offset of the list's closing NUL. False if the section never fitted.
bool ReadRenameSection(const char *path, size_t extra, std::vector<char> &buffer, DWORD &used);

#endif
