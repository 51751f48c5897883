/* tovrel.dll: printer installation and service control for setup programs. */
#ifndef TOVREL_H
#define TOVREL_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Installs or repairs a printer from an INF. Any of the first three strings
   may be null or empty; the library then looks for an INF that fits.
   *reboot receives 1 when a restart must finish the job, and is written only
   when the install ran through. */
void WINAPI Repair(const char *infPath, const char *manufacturer, const char *driverName,
                   const char *printerName, int *reboot, const char *deviceKey);

#ifdef __cplusplus
}
#endif

#endif
