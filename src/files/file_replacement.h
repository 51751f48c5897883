// Putting one file in place: copy, keep the newer installed file, or swap a
// busy one now (Windows NT) or at the next restart (Windows 9x).
#ifndef TOVREL_FILES_FILE_REPLACEMENT_H
#define TOVREL_FILES_FILE_REPLACEMENT_H

class CFileVersion {
public:
    virtual ~CFileVersion() {}

    // 1 when both files carry a version resource; *result is then 1, 0 or -1
    // as first is newer, equal or older. 0 leaves *result alone.
    int CompareVersions(const char *first, const char *second, int *result);
    // 1, 0 or -1 as CompareFileTime gives for the two last-write times; a file
    // that cannot be opened counts as written at time zero.
    int CompareFileTimes(const char *first, const char *second);
};

#endif
