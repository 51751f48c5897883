#include "registration/spooler.h"

namespace {

// The enumeration buffer is sized in whole words of this many bytes.
const DWORD WordSize = sizeof(DWORD);

}  // namespace

const char *const Windows9xEnvironment = "Windows 4.0";

int PrinterDriverDirectory(const char *environment, char *out)
{
    DWORD needed = 0;
    out[0] = 0;
    if (!GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), DirectoryInfoLevel,
                                    reinterpret_cast<BYTE *>(out), MAX_PATH, &needed)) {
        out[0] = 0;
        return 0;
    }
    return 1;
}

int PrintProcessorDirectory(char *out)
{
    DWORD needed = 0;
    out[0] = 0;
    if (!GetPrintProcessorDirectoryA(NULL, NULL, DirectoryInfoLevel, reinterpret_cast<BYTE *>(out),
                                     MAX_PATH, &needed)) {
        out[0] = 0;
        return 0;
    }
    return 1;
}

PRINTER_INFO_2A *ReadPrinterInfo2(HANDLE printer, std::vector<BYTE> &buffer)
{
    DWORD needed = 0;
    GetPrinterA(printer, PrinterInfo2Level, NULL, 0, &needed);
    if (!needed)
        return nullptr;
    buffer.assign(needed, 0);
    if (!GetPrinterA(printer, PrinterInfo2Level, buffer.data(), needed, &needed))
        return nullptr;
    return reinterpret_cast<PRINTER_INFO_2A *>(buffer.data());
}

DRIVER_INFO_2A *ReadDriverInfo2(HANDLE printer, std::vector<BYTE> &buffer)
{
    DWORD needed = 0;
    GetPrinterDriverA(printer, NULL, DriverInfo2Level, NULL, 0, &needed);
    if (!needed)
        return nullptr;
    buffer.assign(needed, 0);
    if (!GetPrinterDriverA(printer, NULL, DriverInfo2Level, buffer.data(), needed, &needed))
        return nullptr;
    return reinterpret_cast<DRIVER_INFO_2A *>(buffer.data());
}

DRIVER_INFO_3A *EnumDriverInfo3(std::vector<BYTE> &buffer, DWORD *count)
{
    DWORD needed = 0, returned = 0;
    *count = 0;
    EnumPrinterDriversA(NULL, NULL, DriverInfo3Level, NULL, 0, &needed, &returned);
    // Whole words, so that the records at its start are aligned; an empty
    // list still gets a buffer, so the pointer given is never null on success.
    DWORD size = (needed + WordSize - 1) & ~(WordSize - 1);
    buffer.assign(size ? size : WordSize, 0);
    if (!EnumPrinterDriversA(NULL, NULL, DriverInfo3Level, buffer.data(), size, &needed, &returned))
        return nullptr;
    *count = returned;
    return reinterpret_cast<DRIVER_INFO_3A *>(buffer.data());
}
