// The directories a run installs into, each listed once on the run's first
// visit: what a killed run left there goes (the install's temporary names,
// and a ".new_file" that no waiting rename names, so that no restart will
// ever take it), and which names are there is known from then on without
// asking again, since a lookup of a name that is not there reads the whole
// directory.
#ifndef TOVREL_FILES_TARGET_DIRECTORIES_H
#define TOVREL_FILES_TARGET_DIRECTORIES_H

#include <string>

#include "files/pending_renames.h"

class CTargetDirectories {
public:
    CTargetDirectories() : PendingRead(false) {}

    // Before target is decided: visits its directory if this run has not,
    // and removes target's own pending copy if it is a stale one.
    void Clear(const char *target);
    // Whether target was there at the visit or has been placed since.
    bool Lists(const char *target) const { return Present.count(target) != 0; }
    void Placed(const char *target) { Present.insert(target); }

private:
    void Visit(const std::string &directory);
    void Note(const std::string &directory, const char *name);

    CPathSet Visited;
    CPathSet Present;
    CPathSet StalePending;
    // Read once a directory shows a pending copy at all.
    CPathSet Pending;
    bool PendingRead;
};

#endif
