// The files of the record's "files" part: deleted, or at the next restart
// when busy; a file that another model or driver still uses stays.
#ifndef TOVREL_UNINSTALL_FILE_REMOVAL_H
#define TOVREL_UNINSTALL_FILE_REMOVAL_H

#include "uninstall/uninstall_run.h"

void RemoveFiles(CUninstallRun &run);

// A file that no value of the record names but that the install led to,
// as the spooler's copy of a driver's file, and whose it is in words.
struct UnrecordedFile {
    std::string Path, Origin;
};

void RemoveUnrecordedFiles(CUninstallRun &run, const std::vector<UnrecordedFile> &files);

#endif
