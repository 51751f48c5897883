#include "service/service_control.h"

CServiceControl::CServiceControl() : LastError(0) {}

CServiceControl::~CServiceControl()
{
    Close();
}

void CServiceControl::Close()
{
    ServiceHandle.Reset();
    ManagerHandle.Reset();
}

bool CServiceControl::Open(const char *name)
{
    Close();
    // Always the full masks: a caller that may not manage services gets
    // nothing, rather than an answer that a later call cannot act on.
    ManagerHandle.Reset(OpenSCManagerA(NULL, NULL, SC_MANAGER_ALL_ACCESS));
    if (!ManagerHandle.IsValid()) {
        LastError = GetLastError();
        return false;
    }
    if (!name || !*name)
        return true;
    ServiceHandle.Reset(OpenServiceA(ManagerHandle.Get(), name, SERVICE_ALL_ACCESS));
    if (!ServiceHandle.IsValid()) {
        LastError = GetLastError();
        return false;
    }
    return true;
}

bool CServiceControl::IsManagerAvailable()
{
    bool result = Open(NULL);
    Close();
    return result;
}

bool CServiceControl::IsInstalled(const char *name)
{
    bool result = Open(name);
    Close();
    return result;
}

bool CServiceControl::QueryStatus(const char *name, SERVICE_STATUS *status)
{
    bool result = Open(name) && QueryServiceStatus(ServiceHandle.Get(), status);
    Close();
    return result;
}

bool CServiceControl::IsActive(const char *name)
{
    SERVICE_STATUS status;
    ZeroMemory(&status, sizeof status);
    if (!QueryStatus(name, &status))
        return false;
    switch (status.dwCurrentState) {
    case SERVICE_START_PENDING:
    case SERVICE_RUNNING:
    case SERVICE_CONTINUE_PENDING:
        return true;
    default:
        return false;
    }
}

bool CServiceControl::Start(const char *name, DWORD argc, const char **argv)
{
    bool result = false;
    if (Open(name)) {
        result = StartServiceA(ServiceHandle.Get(), argc, argv) != FALSE;
        if (!result && GetLastError() == ERROR_SERVICE_ALREADY_RUNNING)
            result = true;
    }
    Close();
    return result;
}

bool CServiceControl::Control(const char *name, DWORD code, SERVICE_STATUS *status)
{
    bool result = false;
    if (Open(name)) {
        result = ControlService(ServiceHandle.Get(), code, status) != FALSE;
        if (!result) {
            LastError = GetLastError();
            // Nothing to stop or pause is what the caller wanted anyway.
            result = (code == SERVICE_CONTROL_STOP || code == SERVICE_CONTROL_PAUSE) &&
                     LastError == ERROR_SERVICE_NOT_ACTIVE;
        }
    }
    Close();
    return result;
}

bool CServiceControl::Stop(const char *name)
{
    SERVICE_STATUS status;
    ZeroMemory(&status, sizeof status);
    return Control(name, SERVICE_CONTROL_STOP, &status);
}

bool CServiceControl::Create(ServiceCreateInfo &info)
{
    // An existing service is left exactly as it is.
    if (IsInstalled(info.ServiceName))
        return false;
    bool result = false;
    if (Open(NULL)) {
        ServiceHandle.Reset(CreateServiceA(ManagerHandle.Get(), info.ServiceName, info.DisplayName,
                                           info.DesiredAccess, info.ServiceType, info.StartType, info.ErrorControl,
                                           info.BinaryPathName, info.LoadOrderGroup, info.TagId ? &info.TagId : NULL,
                                           info.Dependencies, info.ServiceStartName, info.Password));
        if (ServiceHandle.IsValid())
            result = true;
        else
            LastError = GetLastError();
    }
    Close();
    return result;
}
