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

/* A RunDll32 entry: RunDll32.exe tovrel.dll,Repair_RunDll /INF path /MFG maker
   /DRV model /NAME printer. "/?" or "/HELP" shows the usage when show is not 0. */
void CALLBACK Repair_RunDll(HWND window, HINSTANCE instance, const char *commandLine, int show);

/* For the device installer: the command line is the printer name. */
void CALLBACK VendorSetup(HWND window, HINSTANCE instance, const char *commandLine, int show);
/* For the device installer: the command line is a device key below
   HKEY_LOCAL_MACHINE, a blank and the working directory. */
void CALLBACK VendorInstaller(HWND window, HINSTANCE instance, const char *commandLine, int show);

/* Asks whether to restart now and restarts on Yes. A null or empty caption or
   text takes the library's own. */
void WINAPI RebootPrompt(HWND window, const char *caption, const char *text);

/* The arguments of CreateServiceA, in its order; the caller keeps the texts
   alive across the call. On 32-bit Windows this is twelve 32-bit words.
   TagId goes over as its own address when it is not 0, so the manager can
   write the tag it assigned back into the record. */
typedef struct ServiceCreateInfo {
    const char *ServiceName;
    const char *DisplayName;
    DWORD DesiredAccess;
    DWORD ServiceType;
    DWORD StartType;
    DWORD ErrorControl;
    const char *BinaryPathName;
    const char *LoadOrderGroup;
    DWORD TagId;
    const char *Dependencies; /* texts ended by NULs, the list by one more */
    const char *ServiceStartName;
    const char *Password;
#ifdef __cplusplus
    /* An automatically started kernel driver with normal error control. */
    ServiceCreateInfo()
        : ServiceName(0), DisplayName(0), DesiredAccess(SERVICE_ALL_ACCESS), ServiceType(SERVICE_KERNEL_DRIVER),
          StartType(SERVICE_AUTO_START), ErrorControl(SERVICE_ERROR_NORMAL), BinaryPathName(0), LoadOrderGroup(0),
          TagId(0), Dependencies(0), ServiceStartName(0), Password(0)
    {
    }
#endif
} ServiceCreateInfo;

/* Service control. Each gives 1 or 0 and keeps nothing between calls. */
int WINAPI Service_IsManagerAvailable(void);
int WINAPI Service_IsInstalled(const char *name);
int WINAPI Service_IsActive(const char *name);
int WINAPI Service_Create(ServiceCreateInfo *info);
int WINAPI Service_Start(const char *name, DWORD argc, const char **argv);
int WINAPI Service_Stop(const char *name);
/* Stop, then at once start; the result is that of the start. */
int WINAPI Service_StopStart(const char *name);

/* RunDll32 entries. Create takes /SERVICE_NAME, /DISPLAYNAME, /PATHNAME,
   /SRV_TYPE, /START_TYPE, /ERROR_CTRL, /ACCESS, /LOADORDER, /DEPENDENCIES
   (names separated by commas), /USERNAME, /PASSWORD and /STARTSTOP (a service
   to stop before and start after). The others take the service name as the
   whole command text. */
void CALLBACK Service_RunDll_Create(HWND window, HINSTANCE instance, const char *commandLine, int show);
void CALLBACK Service_RunDll_Start(HWND window, HINSTANCE instance, const char *commandLine, int show);
void CALLBACK Service_RunDll_Stop(HWND window, HINSTANCE instance, const char *commandLine, int show);
void CALLBACK Service_RunDll_StopStart(HWND window, HINSTANCE instance, const char *commandLine, int show);

#ifdef __cplusplus
}
#endif

#endif
