#include "registration/driver_registration.h"

#include <cstring>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/spooler.h"

DWORD NewDriverVersion(const COsVersion &os) { return os.Release == 6 ? 3 : 2; }

const char *NewDriverEnvironment(const COsVersion &os)
{
    switch (os.Family) {
    case COsVersion::FamilyWindowsNt:
        // The library is a 32-bit one; its 64-bit build, which the test
        // machine runs, must name the environment that its own spooler
        // enumerates and that AddPrinterA looks the driver up in.
        return sizeof(void *) == 8 ? "Windows x64" : "Windows NT x86";
    case COsVersion::FamilyWindows9x:
        return Windows9xEnvironment;
    default:
        return nullptr;
    }
}

const char *UpdatedDriverFile(const char *stored, const char *file, CFileSpec &spec)
{
    if (!stored)
        stored = "";
    if (CompareNoCase(stored, file) == 0)
        return nullptr;
    if (stored[0] && stored[1] == ':') {
        CFileSpec original;
        original.SetPath(stored);
        spec.SetPath(original.FullPath());
        spec.SetFileName(file);
        // `original` is gone when we return, so compare while both are here.
        if (CompareNoCase(original.FullPath(), spec.FullPath()) == 0)
            return nullptr;
        return spec.FullPath();
    }
    return file;
}

int CPrinterInf::InstallPrintProcessor()
{
    if (PrintProcessorFile.IsEmpty() || PrintProcessorName.IsEmpty())
        return 1;
    if (AddPrintProcessorA(NULL, NULL, PrintProcessorFile, PrintProcessorName))
        return 1;
    return GetLastError() == PrintProcessorAlreadyInstalled ? 1 : 0;
}

int CPrinterInf::InstallMonitor()
{
    if (MonitorFile.IsEmpty() || MonitorName.IsEmpty())
        return 1;
    MONITOR_INFO_2A info;
    info.pName = MonitorName;
    info.pEnvironment = NULL;
    info.pDLLName = MonitorFile;
    if (AddMonitorA(NULL, 2, reinterpret_cast<BYTE *>(&info)))
        return 1;
    return GetLastError() == PrintMonitorAlreadyInstalled ? 1 : 0;
}

int CPrinterInf::UpdateInstalledDrivers()
{
    std::vector<BYTE> buffer;
    DWORD count = 0;
    DRIVER_INFO_3A *drivers = EnumDriverInfo3(buffer, &count);
    if (!drivers)
        return 0;

    DWORD mismatches = 0;
    for (DWORD i = 0; i < count; ++i) {
        DRIVER_INFO_3A &record = drivers[i];
        if (!Model.Equals(record.pName ? record.pName : "")) {
            ++mismatches;
            continue;
        }
        bool changed = false;
        // The spooler may leave these two null; null reads as empty text.
        if (!DefaultDataType.Equals(record.pDefaultDataType ? record.pDefaultDataType : "")) {
            changed = true;
            record.pDefaultDataType = DefaultDataType;
        }
        if (!MonitorName.Equals(record.pMonitorName ? record.pMonitorName : "")) {
            changed = true;
            record.pMonitorName = MonitorName;
        }
        // Each field that changes points into its own spec until the call.
        CFileSpec help, config, data, driver;
        struct {
            char **Field;
            const char *File;
            CFileSpec &Spec;
        } files[] = {{&record.pHelpFile, HelpFile, help},
                     {&record.pConfigFile, ConfigFile, config},
                     {&record.pDataFile, DataFile, data},
                     {&record.pDriverPath, DriverFile, driver}};
        for (auto &file : files) {
            if (const char *updated = UpdatedDriverFile(*file.Field, file.File, file.Spec)) {
                changed = true;
                *file.Field = const_cast<char *>(updated);
            }
        }
        if (changed)
            AddPrinterDriverA(NULL, 3, reinterpret_cast<BYTE *>(&record));
    }
    return mismatches != count ? 1 : 0;
}

int CPrinterInf::AddNewDriver(const CDestinationList &dependentFiles)
{
    COsVersion os;
    CFileSpec directory;
    directory.Resolve(FileSpecPrinterDrivers);
    CBoundedString paths[4];
    const CBoundedString *files[4] = {&DriverFile, &DataFile, &ConfigFile, &HelpFile};
    for (int i = 0; i < 4; ++i) {
        directory.SetFileName(*files[i]);
        paths[i] = CBoundedString(directory.FullPath());
    }

    // NUL-separated names closed by one more NUL, 260 bytes of room a name.
    std::vector<char> block(dependentFiles.size() * CBoundedString::Capacity + 1, 0);
    char *next = block.data();
    for (const CBoundedString &name : dependentFiles) {
        size_t length = name.Length();
        std::memcpy(next, name.Text, length + 1);
        next += length + 1;
    }
    *next = 0;

    DRIVER_INFO_3A info;
    std::memset(&info, 0, sizeof info);
    info.cVersion = NewDriverVersion(os);
    info.pName = Model;
    info.pEnvironment = const_cast<char *>(NewDriverEnvironment(os));
    info.pDriverPath = paths[0];
    info.pDataFile = paths[1];
    info.pConfigFile = paths[2];
    info.pHelpFile = paths[3];
    info.pDependentFiles = block.data();
    info.pMonitorName = MonitorName;
    info.pDefaultDataType = DefaultDataType;
    return AddPrinterDriverA(NULL, 3, reinterpret_cast<BYTE *>(&info)) ? 1 : 0;
}

int CPrinterInf::InstallDriver()
{
    if (UpdateInstalledDrivers())
        return 1;
    // A model that copies nothing is not handed to the spooler at all.
    CDestinationList names;
    if (!CollectCopyFiles(&names, NULL))
        return 1;
    AddNewDriver(names);
    return 1;
}
