// Where an INF sends the files of a section or a cabinet. The map and its
// operations belong to CPrinterInf (entry/printer_inf.h); this header only
// names the two sections that feed it.
#ifndef TOVREL_FILES_DESTINATION_DIRS_H
#define TOVREL_FILES_DESTINATION_DIRS_H

#include "entry/printer_inf.h"

extern const char *const DestinationDirsSection;     // "DestinationDirs"
extern const char *const DestinationDirsCabSection;  // "DestinationDirs.CAB"

#endif
