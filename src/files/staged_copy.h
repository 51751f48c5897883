// A file reaches its place whole or not at all. It is first written
// completely under a temporary name in the target's own directory, with the
// source's times and attributes, and flushed to the disk; only then is it
// renamed over the target, in one step where the system can.
#ifndef TOVREL_FILES_STAGED_COPY_H
#define TOVREL_FILES_STAGED_COPY_H

#include <string>

#include "files/file_identity.h"

struct CStagedFile {
    std::string Path;
    CFileIdentity Identity;
};

// The whole copy of source beside target. False when it could not be made
// whole, and then nothing of it is left.
bool StageCopy(const char *source, const char *target, CStagedFile &staged);
// Renames the staged copy to target; with replace, over an existing target:
// in one step on the NT family, and on the others, whose rename cannot
// replace, by deleting the target just before. False, with the staged copy
// where it was, when that did not happen.
bool MoveStaged(const CStagedFile &staged, const char *target, bool replace);
// Deletes a staged copy that is not wanted after all.
void DiscardStaged(const CStagedFile &staged);

#endif
