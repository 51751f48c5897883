#include "registration/driver_registration.h"

#include <cstring>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/spooler.h"

namespace {

// cVersion of a new driver: the Windows 2000 kind on NT 5, the older kind on
// everything else, Windows 9x included.
enum { DriverVersionNt4 = 2, DriverVersionNt5 = 3 };

// The environment of the NT family is that of the build's own processor: the
// 64-bit build, which some test machines run, must name the one that its own
// spooler enumerates and that AddPrinterA looks the driver up in.
#ifdef _WIN64
const char NtEnvironment[] = "Windows x64";
#else
const char NtEnvironment[] = "Windows NT x86";
#endif

}  // namespace

DWORD NewDriverVersion(const COsVersion &os)
{
    return os.Release == COsVersion::ReleaseNt5 ? DriverVersionNt5 : DriverVersionNt4;
}

const char *NewDriverEnvironment(const COsVersion &os)
{
    switch (os.Family) {
    case COsVersion::FamilyWindowsNt:
        return NtEnvironment;
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
    return GetLastError() == ERROR_PRINT_PROCESSOR_ALREADY_INSTALLED ? 1 : 0;
}

int CPrinterInf::InstallMonitor()
{
    if (MonitorFile.IsEmpty() || MonitorName.IsEmpty())
        return 1;
    MONITOR_INFO_2A info;
    info.pName = MonitorName;
    info.pEnvironment = NULL;
    info.pDLLName = MonitorFile;
    if (AddMonitorA(NULL, MonitorInfo2Level, reinterpret_cast<BYTE *>(&info)))
        return 1;
    return GetLastError() == ERROR_PRINT_MONITOR_ALREADY_INSTALLED ? 1 : 0;
}

namespace {

// The spooler may leave a text null; null reads as empty text.
const char *TextOf(const char *field) { return field ? field : ""; }

// A spec for each file field that may change: the record points into them
// until it has gone back to the spooler.
struct CDriverFileSpecs {
    CFileSpec Help;
    CFileSpec Config;
    CFileSpec Data;
    CFileSpec Driver;
};

// Points the spooler's record at whatever of the INF's driver differs from it;
// the record's own strings stay as they are. Gives true if anything changed.
bool UpdateDriverRecord(CPrinterInf &inf, DRIVER_INFO_3A &record, CDriverFileSpecs &specs)
{
    bool changed = false;
    if (!inf.DefaultDataType.Equals(TextOf(record.pDefaultDataType))) {
        changed = true;
        record.pDefaultDataType = inf.DefaultDataType;
    }
    if (!inf.MonitorName.Equals(TextOf(record.pMonitorName))) {
        changed = true;
        record.pMonitorName = inf.MonitorName;
    }
    const struct {
        char **Field;
        const char *File;
        CFileSpec &Spec;
    } files[] = {{&record.pHelpFile, inf.HelpFile, specs.Help},
                 {&record.pConfigFile, inf.ConfigFile, specs.Config},
                 {&record.pDataFile, inf.DataFile, specs.Data},
                 {&record.pDriverPath, inf.DriverFile, specs.Driver}};
    for (const auto &file : files) {
        if (const char *updated = UpdatedDriverFile(*file.Field, file.File, file.Spec)) {
            changed = true;
            *file.Field = const_cast<char *>(updated);
        }
    }
    return changed;
}

}  // namespace

int CPrinterInf::UpdateInstalledDrivers()
{
    std::vector<BYTE> buffer;
    DWORD count = 0;
    DRIVER_INFO_3A *drivers = EnumDriverInfo3(buffer, &count);
    if (!drivers)
        return 0;

    // Every record of the model is compared and given back by itself.
    bool matched = false;
    for (DWORD i = 0; i < count; ++i) {
        DRIVER_INFO_3A &record = drivers[i];
        if (!Model.Equals(TextOf(record.pName)))
            continue;
        matched = true;
        CDriverFileSpecs specs;
        if (UpdateDriverRecord(*this, record, specs))
            AddPrinterDriverA(NULL, DriverInfo3Level, reinterpret_cast<BYTE *>(&record));
    }
    return matched ? 1 : 0;
}

namespace {

// The driver directory plus the file's name, as a text of its own.
CBoundedString DriverDirectoryPath(CFileSpec &directory, const char *file)
{
    directory.SetFileName(file);
    return CBoundedString(directory.FullPath());
}

// NUL-separated names closed by one more NUL, 260 bytes of room a name.
std::vector<char> DependentFileBlock(const CDestinationList &names)
{
    std::vector<char> block(names.size() * CBoundedString::Capacity + 1, 0);
    char *next = block.data();
    for (const CBoundedString &name : names) {
        size_t length = name.Length();
        std::memcpy(next, name.Text, length + 1);
        next += length + 1;
    }
    *next = 0;
    return block;
}

}  // namespace

int CPrinterInf::AddNewDriver(const CDestinationList &dependentFiles)
{
    COsVersion os;
    CFileSpec directory;
    directory.Resolve(FileSpecPrinterDrivers);
    CBoundedString driverPath = DriverDirectoryPath(directory, DriverFile);
    CBoundedString dataPath = DriverDirectoryPath(directory, DataFile);
    CBoundedString configPath = DriverDirectoryPath(directory, ConfigFile);
    CBoundedString helpPath = DriverDirectoryPath(directory, HelpFile);
    std::vector<char> block = DependentFileBlock(dependentFiles);

    DRIVER_INFO_3A info;
    std::memset(&info, 0, sizeof info);
    info.cVersion = NewDriverVersion(os);
    info.pName = Model;
    info.pEnvironment = const_cast<char *>(NewDriverEnvironment(os));
    info.pDriverPath = driverPath;
    info.pDataFile = dataPath;
    info.pConfigFile = configPath;
    info.pHelpFile = helpPath;
    info.pDependentFiles = block.data();
    info.pMonitorName = MonitorName;
    info.pDefaultDataType = DefaultDataType;
    return AddPrinterDriverA(NULL, DriverInfo3Level, reinterpret_cast<BYTE *>(&info)) ? 1 : 0;
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
