#include <windows.h>

#include "tovrel.h"
#include "entry/printer_inf.h"

extern "C" void WINAPI Repair(const char *infPath, const char *manufacturer, const char *driverName,
                              const char *printerName, int *reboot, const char *deviceKey)
{
    CPrinterInf printer;
    CloseSiblingWindows();
    printer.Install(infPath, manufacturer, driverName, printerName, reboot, deviceKey);
}
