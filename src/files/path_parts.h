// Cutting a path into drive, directory, name and extension and putting it
// back together, by the rules of the C runtime's _splitpath and _makepath,
// plus the two in-place repairs every path gets. No platform calls here.
#ifndef TOVREL_FILES_PATH_PARTS_H
#define TOVREL_FILES_PATH_PARTS_H

#include <cstddef>
#include <string>
#include <vector>

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

// Resolves a path that must lie inside directory, on its text alone: after
// the directory's own text, "." parts and repeated separators (either kind)
// go and ".." takes back the part before it; the parts are joined with
// backslashes into out. Gives the length, or 0 with out empty when the path
// does not begin with the directory, the rest is absolute (rooted, a drive,
// UNC, \\?\ or \\.\) or has a colon, a ".." climbs above the directory, a
// part names a device (CON, PRN, AUX, NUL, COM1-9, LPT1-9, CONIN$, CONOUT$,
// with or without an extension) or is only dots and blanks, nothing names a
// file, or the result does not fit size-1 characters.
size_t ResolveInside(char *out, size_t size, const char *directory, const char *path);

// True when text can be one name in a directory and nothing more: no
// separator, no colon, not only dots and blanks, no device. Empty text is
// no name.
bool IsSingleName(const char *text);

// True when a directory is named from a drive's root ("C:\...") or a share
// ("\\server\share..."): nothing else places a file anywhere certain.
bool IsAbsoluteDirectory(const char *text);

// Where the file name of a path begins: behind its last separator, or
// behind a drive's colon, or 0. A trail byte is never taken for a separator.
size_t FileNameOffset(const char *path, LeadBytePredicate isLeadByte = nullptr);

// The directory followed by the name, with one backslash between them unless
// the directory is empty, ends in a separator or is a bare drive. Nothing is
// cut: the caller decides whether the result fits where it goes.
std::string JoinPath(const std::string &directory, const std::string &name);

// The strings of a block of NUL-ended strings (a REG_MULTI_SZ value, a
// profile section), empty ones included, read within size bytes whether or
// not the block ends as it should.
std::vector<std::string> SplitAtNuls(const char *block, size_t size);

// Ordering of paths as the file system compares them: A to Z without case.
struct CPathLess {
    bool operator()(const std::string &left, const std::string &right) const;
};

#endif
