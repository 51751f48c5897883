// The files of a record: each one present, its size and version, and what
// waits beside it for a restart.
#ifndef TOVREL_REPORT_FILE_CHECK_H
#define TOVREL_REPORT_FILE_CHECK_H

#include <string>

#include "report/driver_record.h"
#include "report/pending_renames.h"
#include "report/report_item.h"

struct FileCheckContext {
    PendingRenames Renames;
    DriverRecord Driver;
    std::string DriverDirectory;  // of this environment, with a backslash at its end
};

ReportItem CheckRecordedFile(const std::string &path, const FileCheckContext &context);
// A self-registered library: the record gives its name and the path it was loaded from.
ReportItem CheckRegisteredLibrary(const std::string &name, const std::string &loadedFrom);
// True when a file, not a directory, is there; its size then in *size.
bool FileIsPresent(const std::string &path, unsigned long long *size);

#endif
