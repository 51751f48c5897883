// A file that cannot go now is deleted at the next restart: through the
// delayed-move list on NT, through a "NUL=" line of WININIT.INI's rename
// section on the 9x family, which is what that family carries out.
#ifndef TOVREL_UNINSTALL_RESTART_DELETE_H
#define TOVREL_UNINSTALL_RESTART_DELETE_H

#include <string>

#include "record/pending_renames.h"

// True once the restart's own list names the file for deletion, read back
// after it was added; already names it in pending, it is not added again.
// how says which list, failure why it could not be added.
bool DeleteAtRestart(const std::string &path, const PendingRenames &pending, std::string &how, std::string &failure);

#endif
