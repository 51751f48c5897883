// The file operations that wait for the next restart: the "rename" section
// of WININIT.INI on the 9x family, PendingFileRenameOperations on NT.
#ifndef TOVREL_RECORD_PENDING_RENAMES_H
#define TOVREL_RECORD_PENDING_RENAMES_H

#include <string>
#include <vector>

struct PendingRenames {
    std::vector<std::string> Paths;      // every source and target named, as plain paths
    std::vector<std::string> Deletions;  // the files that go at the restart
};

PendingRenames ReadPendingRenames();
bool IsPendingRename(const PendingRenames &renames, const std::string &path);
bool IsPendingDeletion(const PendingRenames &renames, const std::string &path);

// The 9x family's list: WININIT.INI in the Windows directory (empty text
// when that cannot be had), and the lines of its section, each
// "TARGET=SOURCE", where a TARGET of "NUL" deletes the SOURCE. False when
// the section cannot be read whole.
extern const char RenameSection[];
std::string WininitLocation();
bool ReadRenameLines(const std::string &wininit, std::vector<std::string> &lines);

#endif
