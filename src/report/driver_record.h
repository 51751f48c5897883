// The spooler's record of the model's driver in this system's environment,
// copied out of the spooler's list so that it outlives it.
#ifndef TOVREL_REPORT_DRIVER_RECORD_H
#define TOVREL_REPORT_DRIVER_RECORD_H

#include <string>
#include <vector>

struct DriverRecord {
    bool Listed = false;  // the spooler's list could be read
    bool Found = false;
    unsigned long Version = 0;
    std::string Environment;
    std::string DriverPath, DataFile, ConfigFile, HelpFile, MonitorName, DefaultDataType;
    std::vector<std::string> DependentFiles;
};

// Of the records of the model's name, the one of the highest version.
DriverRecord ReadDriverRecord(const std::string &model);
// Where the spooler keeps a file of that name for the driver, or empty text
// when the name is none of the driver's files.
std::string SpoolerCopyOf(const DriverRecord &driver, const std::string &fileName);

#endif
