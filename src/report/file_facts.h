// What can be seen of one file: whether it is there, its size, its version
// resource and the digest of its bytes.
#ifndef TOVREL_REPORT_FILE_FACTS_H
#define TOVREL_REPORT_FILE_FACTS_H

#include <string>

struct FileFacts {
    bool Present = false;
    unsigned long long Size = 0;
    std::string Version;         // "a.b.c.d", empty for a file without one
    std::string Sha256;          // empty when the bytes were not or could not be read
    unsigned long ReadError = 0; // why they could not, when asked for
};

// withContent: read the bytes for their digest too.
FileFacts ReadFileFacts(const std::string &path, bool withContent);
// True when a file, not a directory, is there; its size then in *size.
bool FileIsPresent(const std::string &path, unsigned long long *size);
// "present N bytes", with ", version V" for a file that has one.
std::string PresenceText(const FileFacts &facts);

#endif
