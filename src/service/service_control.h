// The one door to the service control manager. Every operation opens what it
// needs, does one thing and closes again: no handle outlives a call, so one
// object can serve any number of services in turn.
#ifndef TOVREL_SERVICE_SERVICE_CONTROL_H
#define TOVREL_SERVICE_SERVICE_CONTROL_H

#include <windows.h>

#include "support/handles.h"
#include "tovrel.h"

class CServiceControl {
public:
    CServiceControl();
    virtual ~CServiceControl();

    bool Open(const char *name);
    void Close();

    bool IsManagerAvailable();
    bool IsInstalled(const char *name);
    bool QueryStatus(const char *name, SERVICE_STATUS *status);
    bool IsActive(const char *name);
    bool Start(const char *name, DWORD argc, const char **argv);
    bool Control(const char *name, DWORD code, SERVICE_STATUS *status);
    bool Stop(const char *name);
    bool Create(ServiceCreateInfo &info);

    // In this order, so that the service is closed before its manager.
    CServiceHandle ManagerHandle;
    CServiceHandle ServiceHandle;
    // Error of the last failed open, control or create; kept for a debugger,
    // never read back.
    DWORD LastError;

private:
    CServiceControl(const CServiceControl &);
    CServiceControl &operator=(const CServiceControl &);
};

#endif
