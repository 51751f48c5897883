// What the service tests read back from Wine's service manager, asked
// without the library in between.
#ifndef TOVREL_TESTS_SERVICE_TEST_SUPPORT_H
#define TOVREL_TESTS_SERVICE_TEST_SUPPORT_H

#include <windows.h>

#include <string>

#include "registry_support.h"
#include "test_support.h"

struct CServiceConfig {
    bool Found = false;
    DWORD ServiceType = 0, StartType = 0, ErrorControl = 0, TagId = 0;
    std::string BinaryPathName, LoadOrderGroup, ServiceStartName, DisplayName;
};

inline std::string TextOf(const char *text) { return text ? text : ""; }

inline CServiceConfig ReadServiceConfig(const std::string &name)
{
    CServiceConfig config;
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_CONNECT);
    SC_HANDLE service = manager ? OpenServiceA(manager, name.c_str(), SERVICE_QUERY_CONFIG) : NULL;
    union {
        QUERY_SERVICE_CONFIGA Config;
        char Bytes[8192];
    } buffer;
    DWORD needed = 0;
    if (service && QueryServiceConfigA(service, &buffer.Config, sizeof buffer, &needed)) {
        const QUERY_SERVICE_CONFIGA &c = buffer.Config;
        config = {true, c.dwServiceType, c.dwStartType, c.dwErrorControl, c.dwTagId, TextOf(c.lpBinaryPathName),
                  TextOf(c.lpLoadOrderGroup), TextOf(c.lpServiceStartName), TextOf(c.lpDisplayName)};
    }
    if (service)
        CloseServiceHandle(service);
    if (manager)
        CloseServiceHandle(manager);
    return config;
}

// From the service's registry key: the manager's own answer is garbled in
// Wine 8, and Wine keeps only the first name of a list given in the A form.
inline std::string FirstDependency(const std::string &name)
{
    return ReadStoredValue(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\" + name, "DependOnService")
        .Data.c_str();
}

inline SERVICE_STATUS_PROCESS ServiceStatus(const std::string &name)
{
    SERVICE_STATUS_PROCESS status = {};
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_CONNECT);
    SC_HANDLE service = manager ? OpenServiceA(manager, name.c_str(), SERVICE_QUERY_STATUS) : NULL;
    DWORD needed = 0;
    if (service)
        QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE *>(&status), sizeof status,
                             &needed);
    if (service)
        CloseServiceHandle(service);
    if (manager)
        CloseServiceHandle(manager);
    return status;
}

// Polls until the service reaches the state; false after 20 s.
inline bool WaitForState(const std::string &name, DWORD state)
{
    for (DWORD start = GetTickCount(); ServiceStatus(name).dwCurrentState != state; Sleep(50))
        if (GetTickCount() - start > 20000)
            return false;
    return true;
}

// The service program, copied to a short path.
inline std::string FixtureServicePath()
{
    CreateDirectoryA("C:\\tovrel-svc", NULL);
    CopyFileA((BinaryDirectory() + "fixture_service.exe").c_str(), "C:\\tovrel-svc\\fixture.exe", TRUE);
    return "C:\\tovrel-svc\\fixture.exe";
}

// A demand-start service that runs the fixture program.
inline bool CreateFixtureService(const std::string &name)
{
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_ALL_ACCESS);
    SC_HANDLE service = manager ? CreateServiceA(manager, name.c_str(), name.c_str(), SERVICE_ALL_ACCESS,
                                                 SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START,
                                                 SERVICE_ERROR_NORMAL, FixtureServicePath().c_str(), NULL, NULL,
                                                 NULL, NULL, NULL)
                                : NULL;
    if (service)
        CloseServiceHandle(service);
    if (manager)
        CloseServiceHandle(manager);
    return service != NULL;
}

#endif
