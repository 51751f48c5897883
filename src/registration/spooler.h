// The local print spooler as the installer uses it: every call goes to this
// machine (null server name).
#ifndef TOVREL_REGISTRATION_SPOOLER_H
#define TOVREL_REGISTRATION_SPOOLER_H

#include <windows.h>
#include <winspool.h>

#include <vector>

// The level by which a spooler call names each record that the installer
// passes or reads.
enum {
    DirectoryInfoLevel = 1,  // the one level of the directory queries
    PrinterInfo2Level = 2,   // PRINTER_INFO_2
    DriverInfo2Level = 2,    // DRIVER_INFO_2
    DriverInfo3Level = 3,    // DRIVER_INFO_3
    MonitorInfo2Level = 2,   // MONITOR_INFO_2
};

// The 9x family's environment, whose drivers an NT machine can also hold.
extern const char *const Windows9xEnvironment;  // "Windows 4.0"

// Directory where the spooler keeps drivers of the environment (null: this
// machine's own), into a 260-byte buffer. 1 on success; on failure `out` is
// empty and 0 is given.
int PrinterDriverDirectory(const char *environment, char *out);

// Directory of this machine's print processors, the same way.
int PrintProcessorDirectory(char *out);

// The two-call reads of the spooler: the first call asks for the size, the
// second fills `buffer`, in which all the record's text pointers lie. Each
// gives the record, or null if the spooler refused.
PRINTER_INFO_2A *ReadPrinterInfo2(HANDLE printer, std::vector<BYTE> &buffer);
DRIVER_INFO_2A *ReadDriverInfo2(HANDLE printer, std::vector<BYTE> &buffer);
// This machine's own drivers at level 3; `count` is how many the array holds.
DRIVER_INFO_3A *EnumDriverInfo3(std::vector<BYTE> &buffer, DWORD *count);

#endif
