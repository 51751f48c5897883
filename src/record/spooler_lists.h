// The spooler's lists of drivers, monitors, processors and printers, each
// read whole into records aligned as the spooler writes them.
#ifndef TOVREL_RECORD_SPOOLER_LISTS_H
#define TOVREL_RECORD_SPOOLER_LISTS_H

#include <windows.h>
#include <winspool.h>

#include <vector>

template <typename Record>
struct SpoolerList {
    std::vector<Record> Buffer;  // records first, then the strings they point to
    DWORD Count = 0;
    const Record *begin() const { return Buffer.data(); }
    const Record *end() const { return Buffer.data() + Count; }
};

bool ListDrivers(const char *environment, SpoolerList<DRIVER_INFO_3A> &drivers);
bool ListMonitors(SpoolerList<MONITOR_INFO_2A> &monitors);
bool ListProcessors(const char *environment, SpoolerList<PRINTPROCESSOR_INFO_1A> &processors);
bool ListLocalPrinters(SpoolerList<PRINTER_INFO_2A> &printers);

#endif
