// One directory's names and attributes, read in one pass: a lookup of a
// name that is not there reads the whole directory on some systems, Wine
// among them, so a run asks the listing instead of the file system.
#ifndef TOVREL_UNINSTALL_DIRECTORY_LISTING_H
#define TOVREL_UNINSTALL_DIRECTORY_LISTING_H

#include <windows.h>

#include <map>
#include <string>

class CDirectoryListing {
public:
    // directory ends in a backslash. A directory that does not exist lists
    // nothing; false, with the system's code in error, when it cannot be read.
    bool Read(const std::string &directory, DWORD &error);
    // False when the name is not there.
    bool Find(const std::string &name, DWORD &attributes) const;

private:
    std::map<std::string, DWORD> Entries;  // names without case, to their attributes
};

#endif
