// What a killed run may have left beside the targets of a directory: the
// install's temporary names, and a target's ".new_file" that no waiting
// rename names, so that no restart will ever take it.
#ifndef TOVREL_FILES_LEFTOVERS_H
#define TOVREL_FILES_LEFTOVERS_H

#include <string>

#include "files/pending_renames.h"

class CLeftovers {
public:
    CLeftovers() : PendingRead(false) {}

    // Before target is decided. The run's first visit of a directory removes
    // the temporary names in it and notes the stale pending copies there;
    // target's own pending copy goes if it is one of them.
    void Clear(const char *target);

private:
    void Visit(const std::string &directory);

    CPathSet Visited;
    CPathSet StalePending;
    // Read once a directory shows a pending copy at all.
    CPathSet Pending;
    bool PendingRead;
};

#endif
