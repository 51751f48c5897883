// The file operations that wait for the next restart: the "rename" section
// of WININIT.INI on the 9x family, PendingFileRenameOperations on NT.
#ifndef TOVREL_RECORD_PENDING_RENAMES_H
#define TOVREL_RECORD_PENDING_RENAMES_H

#include <string>
#include <vector>

struct PendingRenames {
    std::vector<std::string> Paths;  // every source and target named, as plain paths
};

PendingRenames ReadPendingRenames();
bool IsPendingRename(const PendingRenames &renames, const std::string &path);

#endif
