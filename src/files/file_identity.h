// What names one file whatever path leads to it: its index on its volume.
// The install deletes a name through a handle, and only while that name
// still leads to the file it made itself, so that a link put in the file's
// place leads to nothing being deleted.
#ifndef TOVREL_FILES_FILE_IDENTITY_H
#define TOVREL_FILES_FILE_IDENTITY_H

#include <windows.h>

struct CFileIdentity {
    DWORD IndexHigh;
    DWORD IndexLow;
};

bool IdentityOf(HANDLE file, CFileIdentity &identity);

// A file's times and attributes, read from its handle the cheapest way.
struct CFileStamp {
    FILETIME Created, Accessed, Written;
    DWORD Attributes;
};
bool StampOf(HANDLE file, CFileStamp &stamp);
bool SameIdentity(const CFileIdentity &a, const CFileIdentity &b);

// A handle that may delete the file at path, opened without following a
// reparse point at its end; INVALID_HANDLE_VALUE if it cannot be had.
HANDLE OpenForDeletion(const char *path);
// Marks what the handle names (a file, or an empty directory) to go when its
// last handle closes, read-only or not. False where the system offers no such
// call (the 9x family) or it refused.
bool DeleteThroughHandle(HANDLE file);

// Holds a directory: while the handle is open nobody can move or remove it,
// and its holder can still list and change what is in it. Opened for its
// attributes only, without following a reparse point.
HANDLE HoldDirectory(const char *path);
// True when somebody holds the directory, as HoldDirectory does.
bool IsDirectoryHeld(const char *path);
// Removes the directory at path if it is empty and still the directory of
// identity, by name on the 9x family; true when it is gone.
bool RemoveDirectoryIfSame(const char *path, const CFileIdentity &identity);

// Deletes path if it is still the file of identity; false otherwise.
bool DeleteIfSame(const char *path, const CFileIdentity &identity);
// Deletes a plain file left by a killed run of the install, through a handle
// that does not follow a link at its end (by name on the 9x family).
bool DeleteLeftover(const char *path);

#endif
