// Cutting a path into drive, directory, name and extension and putting it
// back together, by the rules of the C runtime's _splitpath and _makepath,
// plus the two in-place repairs every path gets. No platform calls here.
#ifndef TOVREL_FILES_PATH_PARTS_H
#define TOVREL_FILES_PATH_PARTS_H

#include <cstddef>

enum {
    PathDriveSize = 3,   // "C:" and NUL
    PathPartSize = 256,  // 255 characters and NUL, for directory, name, extension
};

// Tells whether a byte opens a double-byte character in the current code
// page; the split never takes the byte after such a one for a separator.
typedef int (*LeadBytePredicate)(unsigned char c);

// Any of the out-buffers may be null when that part is not wanted. The
// drive needs PathDriveSize bytes, the other three PathPartSize; longer
// parts are cut there, and the result is false when a wanted part was cut.
bool SplitPath(const char *path, char *drive, char *directory, char *name, char *extension,
               LeadBytePredicate isLeadByte = nullptr);

// Writes at most size-1 characters and always terminates (size > 0). Gives
// the length written.
size_t MakePath(char *out, size_t size, const char *drive, const char *directory,
                const char *name, const char *extension);

// Overwrites each of / * ? " < > | with the substitute (0 means '_').
char *ReplaceIllegalChars(char *text, char substitute);

// Appends a backslash unless the text ends in one; empty text becomes "\".
// The caller leaves room for one more character.
char *EnsureTrailingBackslash(char *text);

#endif
