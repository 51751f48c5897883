// Where the report looks for a recorded file or a registered library: the
// path itself, the spooler's copy of a driver file, or where the system's
// search finds a library recorded by its bare name.
#ifndef TOVREL_REPORT_FILE_LOCATION_H
#define TOVREL_REPORT_FILE_LOCATION_H

#include <string>

#include "report/driver_record.h"
#include "report/file_facts.h"

struct SpoolerFiles {
    DriverRecord Driver;
    std::string DriverDirectory;  // of this environment, with a backslash at its end
};

struct LocatedFile {
    std::string Path;             // the file looked at
    bool TakenBySpooler = false;  // the spooler's copy stands for a recorded path
    FileFacts Facts;
};

SpoolerFiles ReadSpoolerFiles(const std::string &model);
LocatedFile LocateRecordedFile(const std::string &path, const SpoolerFiles &spooler, bool withContent);
// The library's full path, or empty text when the system's search finds none.
std::string LocateLibrary(const std::string &loadedFrom);
// "present N bytes", or for the spooler's copy "taken by the spooler: PATH present N bytes".
std::string LocatedText(const LocatedFile &file);

#endif
