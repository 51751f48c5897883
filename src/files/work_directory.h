// The private directory in %TEMP% that a run extracts its cabinets into.
// The run makes it itself under an unpredictable name, holds it open so that
// nobody can move or remove it while it is in use, and lists it in a ledger
// under HKLM until it is gone, so that a later run removes what a killed run
// left, and nothing else.
#ifndef TOVREL_FILES_WORK_DIRECTORY_H
#define TOVREL_FILES_WORK_DIRECTORY_H

#include <string>

#include "files/file_identity.h"
#include "support/handles.h"

class CWorkDirectory {
public:
    // Removes what killed runs left, then makes a new directory.
    CWorkDirectory();
    // Removes the directory if it is empty, and then its ledger line.
    ~CWorkDirectory();

    // False when no directory of the run's own could be made: nothing may
    // then be extracted.
    bool IsReady() const { return Ready; }
    // With its trailing separator.
    std::string Path() const { return Directory + "\\"; }

private:
    CWorkDirectory(const CWorkDirectory &);
    CWorkDirectory &operator=(const CWorkDirectory &);
    bool Make();

    std::string Directory;
    CFileHandle Hold;
    CFileIdentity Identity;
    bool Ready;
};

// Every work directory of the ledger that no running install holds: its
// files, then itself. What is not the directory the ledger saw made is left
// alone.
void RemoveStaleWorkDirectories();

#endif
