// Where the directories of the INF's numbering lie on this machine: the
// system's own calls, each answer with a backslash at its end, or empty
// text where the system gives none.
#ifndef TOVREL_RECORD_DIRECTORY_SOURCES_H
#define TOVREL_RECORD_DIRECTORY_SOURCES_H

#include <string>

enum class DirectorySource {
    Windows, System, Temp, Folder, DriverDir, DriverDir9x, ProcessorDir, Color, DevicePath, Web,
    WebPrinters, WindowsSystem, Unknowable
};

// folder: the shell folder's CSIDL, for DirectorySource::Folder.
std::string DirectoryOfSource(DirectorySource source, int folder);
// The spooler's printer driver directory of that environment.
std::string PrinterDriverDirectory(const char *environment);

#endif
