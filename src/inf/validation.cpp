#include <windows.h>

#include "entry/printer_inf.h"

int CPrinterInf::Open(const char *path)
{
    try {
        if (!Load(path))
            throw "Unable to open the file";
    } catch (const char *message) {
        CBoundedString line("\nCPrinterInf::Open,failure,");
        line.Append(message);
        OutputDebugStringA(line);
        return 0;
    }
    return 1;
}
