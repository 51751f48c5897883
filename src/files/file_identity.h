// What names one file whatever path leads to it: its volume and its index on
// that volume. The install deletes a name through a handle, and only while
// that name still leads to the file it made itself, so that a link put in the
// file's place leads to nothing being deleted.
#ifndef TOVREL_FILES_FILE_IDENTITY_H
#define TOVREL_FILES_FILE_IDENTITY_H

#include <windows.h>

struct CFileIdentity {
    DWORD Volume;
    DWORD IndexHigh;
    DWORD IndexLow;
};

bool IdentityOf(HANDLE file, CFileIdentity &identity);
bool SameIdentity(const CFileIdentity &a, const CFileIdentity &b);

// A handle that may delete path, opened without following a reparse point at
// its end; INVALID_HANDLE_VALUE if it cannot be had. A directory is opened
// without sharing its deletion, so that nobody else can move or remove it.
HANDLE OpenForDeletion(const char *path, bool directory);
// Marks what the handle names (a file, or an empty directory) to go when its
// last handle closes, read-only or not. False where the system offers no such
// call (the 9x family) or it refused.
bool DeleteThroughHandle(HANDLE file);

// Deletes path if it is still the file of identity; false otherwise.
bool DeleteIfSame(const char *path, const CFileIdentity &identity);
// Deletes a plain file left by a killed run of the install, through a handle
// that does not follow a link at its end (by name on the 9x family).
bool DeleteLeftover(const char *path);

#endif
