#include "uninstall/spooler_environments.h"

#include <cstring>

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

std::vector<std::string> DriverFiles(const DRIVER_INFO_3A &driver)
{
    std::vector<std::string> files;
    std::string driverPath = SpoolerText(driver.pDriverPath);
    std::string directory = driverPath.substr(0, driverPath.find_last_of('\\') + 1);
    for (const char *file : {driver.pDriverPath, driver.pDataFile, driver.pConfigFile, driver.pHelpFile})
        if (file && *file)
            files.push_back(file);
    for (const char *at = driver.pDependentFiles; at && *at; at += std::strlen(at) + 1)
        files.push_back(std::strchr(at, '\\') ? std::string(at) : directory + at);
    return files;
}
