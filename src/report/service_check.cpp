#include <windows.h>

#include <vector>

#include "report/service_check.h"
#include "support/handles.h"

static const char Kind[] = "service";

static const char *StartTypeText(DWORD startType)
{
    switch (startType) {
    case SERVICE_BOOT_START: return "boot start";
    case SERVICE_SYSTEM_START: return "system start";
    case SERVICE_AUTO_START: return "auto start";
    case SERVICE_DEMAND_START: return "demand start";
    case SERVICE_DISABLED: return "disabled";
    }
    return "unknown start type";
}

static const char *RunStateText(DWORD state)
{
    switch (state) {
    case SERVICE_STOPPED: return "stopped";
    case SERVICE_START_PENDING: return "starting";
    case SERVICE_STOP_PENDING: return "stopping";
    case SERVICE_RUNNING: return "running";
    case SERVICE_CONTINUE_PENDING: return "continuing";
    case SERVICE_PAUSE_PENDING: return "pausing";
    case SERVICE_PAUSED: return "paused";
    }
    return "in an unknown state";
}

static bool QueryStartType(SC_HANDLE service, DWORD &startType)
{
    DWORD needed = 0;
    QueryServiceConfigA(service, NULL, 0, &needed);
    if (needed == 0)
        return false;
    // QUERY_SERVICE_CONFIGA and the strings behind it, aligned as the record needs.
    std::vector<QUERY_SERVICE_CONFIGA> buffer(needed / sizeof(QUERY_SERVICE_CONFIGA) + 1);
    DWORD size = static_cast<DWORD>(buffer.size() * sizeof(QUERY_SERVICE_CONFIGA));
    if (!QueryServiceConfigA(service, buffer.data(), size, &needed))
        return false;
    startType = buffer[0].dwStartType;
    return true;
}

ReportItem CheckService(const std::string &name)
{
    CServiceHandle manager(OpenSCManagerA(NULL, NULL, SC_MANAGER_CONNECT));
    if (!manager.IsValid())
        return MakeItem(Kind, name, ItemState::Unchecked, "no service control manager");
    CServiceHandle service(OpenServiceA(manager.Get(), name.c_str(), SERVICE_QUERY_CONFIG | SERVICE_QUERY_STATUS));
    if (!service.IsValid()) {
        DWORD error = GetLastError();
        if (error == ERROR_SERVICE_DOES_NOT_EXIST)
            return MakeItem(Kind, name, ItemState::Drifted, "not installed");
        return MakeItem(Kind, name, ItemState::Unchecked, "cannot be opened, error " + std::to_string(error));
    }
    DWORD startType = 0;
    SERVICE_STATUS status;
    if (!QueryStartType(service.Get(), startType) || !QueryServiceStatus(service.Get(), &status))
        return MakeItem(Kind, name, ItemState::Unchecked, "installed; its state cannot be read");
    std::string detail = std::string("installed, ") + StartTypeText(startType) + ", " + RunStateText(status.dwCurrentState);
    // An automatic service that does not run has stopped since the system
    // started it; a demand service is stopped until somebody starts it.
    bool drifted = startType == SERVICE_AUTO_START && status.dwCurrentState != SERVICE_RUNNING;
    return MakeItem(Kind, name, drifted ? ItemState::Drifted : ItemState::Held, detail);
}
