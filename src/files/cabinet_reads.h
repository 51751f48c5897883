// The cabinets the decoder has open for reading, each behind its guard: a
// read gets only the bytes the guard passed, so that the decoder fails at a
// block that does not hold as it would at the end of a cut file, and never
// decodes it. Every read-only open of the decoder's file layer is a cabinet:
// the first member, a member it goes on to, or one it is asked about.
#ifndef TOVREL_FILES_CABINET_READS_H
#define TOVREL_FILES_CABINET_READS_H

#include <windows.h>

#include <map>
#include <memory>

#include "files/cabinet_guard.h"

class CGuardedReads {
public:
    CGuardedReads();
    ~CGuardedReads();

    // Starts guarding a cabinet just opened for reading, at its start; false
    // when its size cannot be had.
    bool Add(HANDLE file);
    // How many of count bytes the next read of file may take; the file stays
    // where it stood. A file that is not guarded may take them all.
    DWORD Allow(HANDLE file, DWORD count);
    void Remove(HANDLE file);

private:
    CGuardedReads(const CGuardedReads &);
    CGuardedReads &operator=(const CGuardedReads &);

    struct CGuarded;
    std::map<HANDLE, std::unique_ptr<CGuarded>> Cabinets;
    CSplitBlock Split;
};

// The reads of the extraction running on this thread; null outside it, and
// then the file layer opens no cabinet.
extern thread_local CGuardedReads *GuardedReads;

class CGuardedReadsScope {
public:
    explicit CGuardedReadsScope(CGuardedReads &reads) : Previous(GuardedReads) { GuardedReads = &reads; }
    ~CGuardedReadsScope() { GuardedReads = Previous; }

private:
    CGuardedReadsScope(const CGuardedReadsScope &);
    CGuardedReadsScope &operator=(const CGuardedReadsScope &);
    CGuardedReads *Previous;
};

#endif
