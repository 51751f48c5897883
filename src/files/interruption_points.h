// Where a test build of the library can stop an install the way a kill, a
// logoff or a power cut would, and name its work directory in advance. The
// shipped library links the empty versions below and reads no switch at all.
#ifndef TOVREL_FILES_INTERRUPTION_POINTS_H
#define TOVREL_FILES_INTERRUPTION_POINTS_H

#include <string>

// point is one of the names below; subject the path of the file concerned,
// or empty.
constexpr char InterruptExtracting[] = "extract";  // a member's first bytes are in the work directory
constexpr char InterruptWriting[] = "write";        // a target's first bytes are under its temporary name
constexpr char InterruptPending[] = "pending";      // a busy target's new copy is named .new_file, unscheduled
constexpr char InterruptCopied[] = "copied";        // the copy stage is over
void InterruptionPoint(const char *point, const char *subject);

// True when a test build chose the work directory's file name.
bool ChosenWorkDirectoryName(std::string &name);

#endif
