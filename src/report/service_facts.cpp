#include <windows.h>

#include <vector>

#include "report/service_facts.h"
#include "support/handles.h"

const char *StartTypeText(unsigned long startType)
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

const char *RunStateText(unsigned long state)
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

static bool QueryConfig(SC_HANDLE service, ServiceFacts &facts)
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
    facts.StartType = buffer[0].dwStartType;
    facts.Type = buffer[0].dwServiceType;
    facts.BinaryPath = buffer[0].lpBinaryPathName ? buffer[0].lpBinaryPathName : "";
    return true;
}

ServiceFacts ReadServiceFacts(const std::string &name)
{
    ServiceFacts facts;
    CServiceHandle manager(OpenSCManagerA(NULL, NULL, SC_MANAGER_CONNECT));
    if (!manager.IsValid()) {
        facts.Outcome = ServiceRead::NoManager;
        return facts;
    }
    CServiceHandle service(OpenServiceA(manager.Get(), name.c_str(), SERVICE_QUERY_CONFIG | SERVICE_QUERY_STATUS));
    if (!service.IsValid()) {
        facts.Error = GetLastError();
        facts.Outcome =
            facts.Error == ERROR_SERVICE_DOES_NOT_EXIST ? ServiceRead::NotInstalled : ServiceRead::CannotOpen;
        return facts;
    }
    SERVICE_STATUS status;
    if (!QueryConfig(service.Get(), facts) || !QueryServiceStatus(service.Get(), &status))
        return facts;
    facts.RunState = status.dwCurrentState;
    facts.Outcome = ServiceRead::Read;
    return facts;
}
