#include "record/spooler_lists.h"

static const DWORD DriverLevel = 3;
static const DWORD MonitorLevel = 2;
static const DWORD ProcessorLevel = 1;
static const DWORD PrinterLevel = 2;
static const int ListAttempts = 3;

// Asks for the size, then reads into records of the right alignment. A
// list that grew between the two calls is asked for again.
template <typename Record, typename Call>
static bool ReadList(SpoolerList<Record> &list, Call call)
{
    DWORD needed = 0, count = 0;
    for (int attempt = 0; attempt < ListAttempts; ++attempt) {
        list.Buffer.assign(needed / sizeof(Record) + 1, Record());
        DWORD size = static_cast<DWORD>(list.Buffer.size() * sizeof(Record));
        if (call(reinterpret_cast<BYTE *>(list.Buffer.data()), size, &needed, &count)) {
            list.Count = count;
            return true;
        }
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            break;
    }
    list.Count = 0;
    return false;
}

bool ListDrivers(const char *environment, SpoolerList<DRIVER_INFO_3A> &drivers)
{
    return ReadList(drivers, [environment](BYTE *buffer, DWORD size, DWORD *needed, DWORD *count) {
        return EnumPrinterDriversA(NULL, const_cast<char *>(environment), DriverLevel, buffer, size, needed, count);
    });
}

bool ListMonitors(SpoolerList<MONITOR_INFO_2A> &monitors)
{
    return ReadList(monitors, [](BYTE *buffer, DWORD size, DWORD *needed, DWORD *count) {
        return EnumMonitorsA(NULL, MonitorLevel, buffer, size, needed, count);
    });
}

bool ListProcessors(const char *environment, SpoolerList<PRINTPROCESSOR_INFO_1A> &processors)
{
    return ReadList(processors, [environment](BYTE *buffer, DWORD size, DWORD *needed, DWORD *count) {
        return EnumPrintProcessorsA(NULL, const_cast<char *>(environment), ProcessorLevel, buffer, size, needed,
                                    count);
    });
}

bool ListLocalPrinters(SpoolerList<PRINTER_INFO_2A> &printers)
{
    return ReadList(printers, [](BYTE *buffer, DWORD size, DWORD *needed, DWORD *count) {
        return EnumPrintersA(PRINTER_ENUM_LOCAL, NULL, PrinterLevel, buffer, size, needed, count);
    });
}
