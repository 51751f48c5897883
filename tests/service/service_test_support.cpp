#include "service_test_support.h"

#include "test_support.h"

CServiceConfig ReadServiceConfig(const std::string &name)
{
    CServiceConfig config;
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_ALL_ACCESS);
    SC_HANDLE service = manager ? OpenServiceA(manager, name.c_str(), SERVICE_QUERY_CONFIG) : NULL;
    if (service) {
        union {
            QUERY_SERVICE_CONFIGA Config;
            char Bytes[8192];
        } buffer;
        DWORD needed = 0;
        if (QueryServiceConfigA(service, &buffer.Config, sizeof buffer, &needed)) {
            const QUERY_SERVICE_CONFIGA &c = buffer.Config;
            config.Found = true;
            config.ServiceType = c.dwServiceType;
            config.StartType = c.dwStartType;
            config.ErrorControl = c.dwErrorControl;
            config.TagId = c.dwTagId;
            config.BinaryPathName = c.lpBinaryPathName ? c.lpBinaryPathName : "";
            config.LoadOrderGroup = c.lpLoadOrderGroup ? c.lpLoadOrderGroup : "";
            config.ServiceStartName = c.lpServiceStartName ? c.lpServiceStartName : "";
            config.DisplayName = c.lpDisplayName ? c.lpDisplayName : "";
        }
        CloseServiceHandle(service);
    }
    if (manager)
        CloseServiceHandle(manager);
    return config;
}

std::vector<std::string> ReadDependencies(const std::string &name)
{
    std::vector<std::string> list;
    HKEY key = NULL;
    std::string path = "SYSTEM\\CurrentControlSet\\Services\\" + name;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return list;
    char data[1024] = {0};
    DWORD size = sizeof data - 2, type = 0;
    if (RegQueryValueExA(key, "DependOnService", NULL, &type, reinterpret_cast<BYTE *>(data), &size) ==
        ERROR_SUCCESS)
        for (const char *p = data; *p; p += strlen(p) + 1)
            list.push_back(p);
    RegCloseKey(key);
    return list;
}

namespace {

bool QueryProcessStatus(const std::string &name, SERVICE_STATUS_PROCESS *status)
{
    bool ok = false;
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_CONNECT);
    SC_HANDLE service = manager ? OpenServiceA(manager, name.c_str(), SERVICE_QUERY_STATUS) : NULL;
    DWORD needed = 0;
    if (service)
        ok = QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE *>(status),
                                  sizeof *status, &needed) != FALSE;
    if (service)
        CloseServiceHandle(service);
    if (manager)
        CloseServiceHandle(manager);
    return ok;
}

}  // namespace

DWORD CurrentState(const std::string &name)
{
    SERVICE_STATUS_PROCESS status = {};
    return QueryProcessStatus(name, &status) ? status.dwCurrentState : 0;
}

DWORD ServiceProcessId(const std::string &name)
{
    SERVICE_STATUS_PROCESS status = {};
    return QueryProcessStatus(name, &status) ? status.dwProcessId : 0;
}

bool WaitForState(const std::string &name, DWORD state, DWORD timeout)
{
    DWORD start = GetTickCount();
    while (CurrentState(name) != state) {
        if (GetTickCount() - start > timeout)
            return false;
        Sleep(50);
    }
    return true;
}

std::string FixtureServicePath()
{
    std::string path = "C:\\tovrel-svc\\fixture.exe";
    if (!PathExists(path)) {
        CreateDirectoryA("C:\\tovrel-svc", NULL);
        CopyFileA((BinaryDirectory() + "fixture_service.exe").c_str(), path.c_str(), FALSE);
    }
    return path;
}

bool CreateFixtureService(const std::string &name)
{
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_ALL_ACCESS);
    if (!manager)
        return false;
    SC_HANDLE service = CreateServiceA(manager, name.c_str(), name.c_str(), SERVICE_ALL_ACCESS,
                                       SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                       FixtureServicePath().c_str(), NULL, NULL, NULL, NULL, NULL);
    if (service)
        CloseServiceHandle(service);
    CloseServiceHandle(manager);
    return service != NULL;
}
