#include <windows.h>
#include <winspool.h>

#include <cstring>

#include "record/spooler_lists.h"
#include "record/system_family.h"
#include "record/text_compare.h"
#include "report/driver_record.h"

static std::string TextOrEmpty(const char *text)
{
    return text ? text : "";
}

static std::vector<std::string> SplitFileList(const char *list)
{
    std::vector<std::string> files;
    for (const char *at = list; at && *at; at += std::strlen(at) + 1)
        files.push_back(at);
    return files;
}

static DriverRecord CopyRecord(const DRIVER_INFO_3A &info, const char *environment)
{
    DriverRecord driver;
    driver.Found = true;
    driver.Version = info.cVersion;
    driver.Environment = environment;
    driver.DriverPath = TextOrEmpty(info.pDriverPath);
    driver.DataFile = TextOrEmpty(info.pDataFile);
    driver.ConfigFile = TextOrEmpty(info.pConfigFile);
    driver.HelpFile = TextOrEmpty(info.pHelpFile);
    driver.MonitorName = TextOrEmpty(info.pMonitorName);
    driver.DefaultDataType = TextOrEmpty(info.pDefaultDataType);
    driver.DependentFiles = SplitFileList(info.pDependentFiles);
    return driver;
}

DriverRecord ReadDriverRecord(const std::string &model)
{
    const char *environment = NativeEnvironment();
    SpoolerList<DRIVER_INFO_3A> drivers;
    bool listed = ListDrivers(environment, drivers);
    const DRIVER_INFO_3A *found = nullptr;
    for (const DRIVER_INFO_3A &info : drivers)
        if (info.pName && EqualNoCase(info.pName, model) && (!found || info.cVersion > found->cVersion))
            found = &info;
    DriverRecord driver;
    if (found)
        driver = CopyRecord(*found, environment);
    driver.Listed = listed;
    driver.Environment = environment;
    return driver;
}

std::string SpoolerCopyOf(const DriverRecord &driver, const std::string &fileName)
{
    if (!driver.Found)
        return std::string();
    std::vector<std::string> files = driver.DependentFiles;
    files.insert(files.end(), {driver.DriverPath, driver.DataFile, driver.ConfigFile, driver.HelpFile});
    std::string versionDirectory = driver.DriverPath.substr(0, driver.DriverPath.find_last_of('\\') + 1);
    for (const std::string &file : files)
        if (!file.empty() && EqualNoCase(FileNameOf(file), fileName))
            return file.find('\\') == std::string::npos ? versionDirectory + file : file;
    return std::string();
}
