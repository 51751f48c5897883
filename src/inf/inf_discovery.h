// Finding an INF that offers a model, and what the spooler and the device
// installer already know of a printer. Nothing here writes.
#ifndef TOVREL_INF_INF_DISCOVERY_H
#define TOVREL_INF_INF_DISCOVERY_H

#include <windows.h>

#include "inf/bounded_string.h"
#include "support/handles.h"

// Where FindInf looks, in this order, as directory ids of CFileSpec; ends in 0.
extern const int InfSearchDirectories[];

// A snapshot of one printer and its driver as the spooler reports them.
class CInstalledPrinter {
public:
    explicit CInstalledPrinter(const char *name = NULL);
    virtual ~CInstalledPrinter();

    bool Open(const char *name);
    void Close();
    // The handle stays open afterwards, until Close.
    bool Read(const char *name);
    const char *GetDriverName() const { return DriverName; }

    CBoundedString ServerName;
    CBoundedString PrinterName;
    CBoundedString ShareName;
    CBoundedString PortName;
    CBoundedString DriverName;
    CBoundedString Comment;
    CBoundedString Location;
    CBoundedString SepFile;
    CBoundedString PrintProcessor;
    CBoundedString Datatype;
    CBoundedString Parameters;
    DWORD Attributes;
    DWORD Priority;
    DWORD DefaultPriority;
    DWORD StartTime;
    DWORD UntilTime;
    DWORD Status;
    DWORD Jobs;
    DWORD AveragePpm;
    DWORD DriverVersion;
    CBoundedString DriverInfoName;
    CBoundedString Environment;
    CBoundedString DriverPath;
    CBoundedString DataFile;
    CBoundedString ConfigFile;
    CPrinterHandle PrinterHandle;
    DWORD LastError;

private:
    void CopyPrinterInfo(const PRINTER_INFO_2A &info);
    void CopyDriverInfo(const DRIVER_INFO_2A &driver);

    CInstalledPrinter(const CInstalledPrinter &);
    CInstalledPrinter &operator=(const CInstalledPrinter &);
};

#endif
