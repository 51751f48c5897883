#include "inf/inf_discovery.h"

#include <cstring>
#include <vector>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "inf/candidate_file.h"
#include "inf/candidate_match.h"
#include "inf/os_version.h"
#include "registration/reg_key.h"
#include "registration/spooler.h"

const int InfSearchDirectories[] = {FileSpecCurrent, FileSpecPrinterDrivers, FileSpecDevicePath, 0};

namespace {

void CopyField(CBoundedString &field, const char *text)
{
    field = CBoundedString(text ? text : "");
}

}  // namespace

CInstalledPrinter::CInstalledPrinter(const char *name)
    : Attributes(0), Priority(0), DefaultPriority(0), StartTime(0), UntilTime(0), Status(0), Jobs(0),
      AveragePpm(0), DriverVersion(0), LastError(0)
{
    if (name && *name)
        Read(name);
}

CInstalledPrinter::~CInstalledPrinter() { Close(); }

bool CInstalledPrinter::Open(const char *name)
{
    Close();
    // A null name would open the print server itself, which is no printer.
    if (!name || !*name)
        return false;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ALL_ACCESS};
    if (!OpenPrinterA(const_cast<char *>(name), PrinterHandle.Put(), &defaults)) {
        LastError = GetLastError();
        PrinterHandle.Release();
        return false;
    }
    return true;
}

void CInstalledPrinter::Close() { PrinterHandle.Reset(); }

bool CInstalledPrinter::Read(const char *name)
{
    if (!Open(name))
        return false;
    bool read = false;
    std::vector<BYTE> buffer;
    if (PRINTER_INFO_2A *info = ReadPrinterInfo2(PrinterHandle.Get(), buffer)) {
        CopyPrinterInfo(*info);
        read = true;
    }
    // A driver that cannot be read leaves its fields empty; the printer
    // still counts as read.
    if (DRIVER_INFO_2A *driver = ReadDriverInfo2(PrinterHandle.Get(), buffer))
        CopyDriverInfo(*driver);
    return read;
}

void CInstalledPrinter::CopyPrinterInfo(const PRINTER_INFO_2A &info)
{
    CopyField(ServerName, info.pServerName);
    CopyField(PrinterName, info.pPrinterName);
    CopyField(ShareName, info.pShareName);
    CopyField(PortName, info.pPortName);
    CopyField(DriverName, info.pDriverName);
    CopyField(Comment, info.pComment);
    CopyField(Location, info.pLocation);
    CopyField(SepFile, info.pSepFile);
    CopyField(PrintProcessor, info.pPrintProcessor);
    CopyField(Datatype, info.pDatatype);
    CopyField(Parameters, info.pParameters);
    Attributes = info.Attributes;
    Priority = info.Priority;
    DefaultPriority = info.DefaultPriority;
    StartTime = info.StartTime;
    UntilTime = info.UntilTime;
    Status = info.Status;
    Jobs = info.cJobs;
    AveragePpm = info.AveragePPM;
}

void CInstalledPrinter::CopyDriverInfo(const DRIVER_INFO_2A &driver)
{
    DriverVersion = driver.cVersion;
    CopyField(DriverInfoName, driver.pName);
    CopyField(Environment, driver.pEnvironment);
    CopyField(DriverPath, driver.pDriverPath);
    CopyField(DataFile, driver.pDataFile);
    CopyField(ConfigFile, driver.pConfigFile);
}

int CPrinterInf::MatchInf(CBoundedString inf, CBoundedString model, CBoundedString &manufacturer)
{
    // A store of its own for each candidate: nothing is kept from one to the
    // next, nor from one search to the next.
    CCandidateInf candidate;
    if (!ReadCandidateInf(inf, candidate))
        return 0;
    return MatchCandidate(candidate, model, manufacturer, GetThreadLocale());
}

namespace {

// The installed driver's data file names the INF that it came from.
bool MatchInstalledPrinter(CPrinterInf &printerInf, const char *printerName, CBoundedString &inf,
                           CBoundedString &manufacturer, CBoundedString &model)
{
    CInstalledPrinter printer;
    if (!printer.Read(printerName))
        return false;
    // From here on the printer's driver is the model sought.
    model = printer.DriverName;
    inf = CBoundedString();
    GetPrivateProfileStringA(printer.DriverName, "InstallINF", "", inf, CBoundedString::Capacity,
                             printer.DataFile);
    return !inf.IsEmpty() && printerInf.MatchInf(inf, model, manufacturer);
}

// Makes each search directory current in turn; the process's directory is
// back as it was afterwards.
bool SearchInfDirectories(CPrinterInf &printerInf, CBoundedString &inf, CBoundedString &manufacturer,
                          const CBoundedString &model)
{
    CFileSpec current;
    current.Resolve(FileSpecCurrent);
    CBoundedString returnTo(current.DirectoryPath());
    bool found = false;
    for (const int *id = InfSearchDirectories; *id && !found; ++id) {
        CFileSpec directory;
        directory.Resolve(*id);
        // A directory that cannot be entered leaves the search where it was.
        SetCurrentDirectoryA(directory.DirectoryPath());
        WIN32_FIND_DATAA data;
        CFindHandle find(FindFirstFileA("*.inf", &data));
        if (!find.IsValid())
            continue;
        do {
            directory.SetFileName(data.cFileName);
            inf = CBoundedString(directory.FullPath());
            found = printerInf.MatchInf(inf, model, manufacturer) != 0;
        } while (!found && FindNextFileA(find.Get(), &data));
    }
    SetCurrentDirectoryA(returnTo);
    return found;
}

}  // namespace

int CPrinterInf::FindInf(const char *printerName, char *inf, int infSize, char *manufacturer,
                         int manufacturerSize, char *model, int modelSize)
{
    CBoundedString foundInf(inf), foundMaker(manufacturer), foundModel(model);
    if (!MatchInstalledPrinter(*this, printerName, foundInf, foundMaker, foundModel) &&
        !SearchInfDirectories(*this, foundInf, foundMaker, foundModel))
        return 0;

    // Copied only where it fits; CopyBounded never runs past the size given.
    const struct {
        char *Target;
        int Size;
        const CBoundedString &Text;
    } results[] = {{inf, infSize, foundInf}, {manufacturer, manufacturerSize, foundMaker},
                   {model, modelSize, foundModel}};
    for (const auto &result : results)
        if (result.Target && result.Size > 0 && static_cast<size_t>(result.Size) >= result.Text.Length())
            CopyBounded(result.Target, result.Text, static_cast<size_t>(result.Size));
    return 1;
}

namespace {

// A device key reads "Enum\<hardware id>\<instance>".
const char EnumKey[] = "Enum\\";

// Each output of ReadDeviceKey is a buffer of 260 bytes.
void QueryText(CRegKey &key, const char *name, char *out)
{
    key.QueryString(name, out, CBoundedString::Capacity);
}

// The instance, with each & read as a backslash, names the device below Enum
// that holds the port.
CBoundedString PortDeviceKey(const CBoundedString &keyPath, const char *hardwareId)
{
    CBoundedString portDevice(EnumKey);
    // Behind the hardware id comes one backslash, then the instance.
    size_t instance = std::strlen(EnumKey) + std::strlen(hardwareId) + 1;
    if (instance < keyPath.Length())
        portDevice.Append(keyPath.Text + instance);
    for (char *c = portDevice.Text; *c; ++c)
        if (*c == '&')
            *c = '\\';
    return portDevice;
}

}  // namespace

int CPrinterInf::ReadDeviceKey(CBoundedString keyPath, char *deviceClass, char *model, char *hardwareId,
                               char *manufacturer, char *modelValue, char *portName)
{
    if (COsVersion().Family != COsVersion::FamilyWindows9x)
        return 0;
    CRegKey key;
    if (!key.Open(HKEY_LOCAL_MACHINE, keyPath))
        return 0;
    QueryText(key, "Class", deviceClass);
    QueryText(key, "DeviceDesc", model);
    QueryText(key, "HardwareID", hardwareId);
    QueryText(key, "Manufacturer", manufacturer);
    QueryText(key, "Model", modelValue);

    CBoundedString portDevice = PortDeviceKey(keyPath, hardwareId);
    if (key.Open(HKEY_LOCAL_MACHINE, portDevice))
        QueryText(key, "PortName", portName);
    return 1;
}
