// What the service tests read back from Wine's service manager.
#ifndef TOVREL_TESTS_SERVICE_TEST_SUPPORT_H
#define TOVREL_TESTS_SERVICE_TEST_SUPPORT_H

#include <windows.h>

#include <string>
#include <vector>

struct CServiceConfig {
    bool Found = false;
    DWORD ServiceType = 0, StartType = 0, ErrorControl = 0, TagId = 0;
    std::string BinaryPathName, LoadOrderGroup, ServiceStartName, DisplayName;
};

CServiceConfig ReadServiceConfig(const std::string &name);
// From the service's registry key: the manager's own answer is garbled in Wine 8.
std::vector<std::string> ReadDependencies(const std::string &name);
// Polls until the service reaches the state; false after the time-out.
bool WaitForState(const std::string &name, DWORD state, DWORD timeout = 20000);
DWORD CurrentState(const std::string &name);
DWORD ServiceProcessId(const std::string &name);
// The service program, copied to a short path: C:\tovrel-svc\fixture.exe.
std::string FixtureServicePath();
// Creates a demand-start service that runs the fixture program.
bool CreateFixtureService(const std::string &name);

#endif
