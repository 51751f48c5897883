#include "registration/spooler.h"

const char *const Windows9xEnvironment = "Windows 4.0";

int PrinterDriverDirectory(const char *environment, char *out)
{
    DWORD needed = 0;
    out[0] = 0;
    if (!GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), 1,
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
    if (!GetPrintProcessorDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(out), MAX_PATH,
                                     &needed)) {
        out[0] = 0;
        return 0;
    }
    return 1;
}
