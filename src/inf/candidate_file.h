// A candidate of the discovery read from disk: once, whole, and into a store
// of its own.
#ifndef TOVREL_INF_CANDIDATE_FILE_H
#define TOVREL_INF_CANDIDATE_FILE_H

#include "inf/candidate_inf.h"

// Reads the file as the platform's profile calls read one (16-bit text and
// UTF-8 behind its mark come in the ANSI code page) into candidate, which
// must be new, ending with its [Version] section when that names another
// class than the printer's. False when the file cannot be read or is empty.
bool ReadCandidateInf(const char *path, CCandidateInf &candidate);

#endif
