#include "uninstall/spooler_environments.h"

const char *const SpoolerEnvironments[] = {"Windows 4.0", "Windows NT x86", "Windows x64", "Windows IA64",
                                           "Windows ARM64"};
const int SpoolerEnvironmentCount = sizeof(SpoolerEnvironments) / sizeof(SpoolerEnvironments[0]);

bool ListEnvironmentDrivers(const char *environment, SpoolerList<DRIVER_INFO_3A> &drivers, DWORD &error)
{
    if (ListDrivers(environment, drivers))
        return true;
    error = GetLastError();
    return error == ERROR_INVALID_ENVIRONMENT;
}

std::string SpoolerText(const char *text)
{
    return text ? text : "";
}
