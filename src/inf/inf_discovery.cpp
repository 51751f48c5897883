#include "inf/inf_discovery.h"

#include <cstring>
#include <vector>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "inf/os_version.h"
#include "registration/reg_key.h"
#include "registration/spooler.h"

const char *const PrinterClassGuid = "{4D36E979-E325-11CE-BFC1-08002BE10318}";

const int InfSearchDirectories[] = {FileSpecCurrent, FileSpecPrinterDrivers, FileSpecDevicePath, 0};

namespace {

void CopyField(CBoundedString &field, const char *text)
{
    field = CBoundedString(text ? text : "");
}

// The NUL-separated lines of a profile section, cut at 260 bytes like the
// reader that the discovery has always used: what does not fit is not seen.
struct CSectionLines {
    char Buffer[CBoundedString::Capacity];
    char *Next;

    CSectionLines(const char *section, const char *file)
    {
        DWORD got = GetPrivateProfileSectionA(section, Buffer, sizeof Buffer, file);
        if (!got)
            Buffer[0] = 0;
        // Make sure the block ends in two NULs even where the platform cut it.
        Buffer[sizeof Buffer - 2] = 0;
        Buffer[sizeof Buffer - 1] = 0;
        Next = Buffer;
    }
    bool IsEmpty() const { return Buffer[0] == 0; }
    // Gives the next line, or null after the last.
    char *Take()
    {
        if (!*Next)
            return nullptr;
        char *line = Next;
        Next += std::strlen(Next) + 1;
        return line;
    }
};

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
        read = true;
        CopyField(ServerName, info->pServerName);
        CopyField(PrinterName, info->pPrinterName);
        CopyField(ShareName, info->pShareName);
        CopyField(PortName, info->pPortName);
        CopyField(DriverName, info->pDriverName);
        CopyField(Comment, info->pComment);
        CopyField(Location, info->pLocation);
        CopyField(SepFile, info->pSepFile);
        CopyField(PrintProcessor, info->pPrintProcessor);
        CopyField(Datatype, info->pDatatype);
        CopyField(Parameters, info->pParameters);
        Attributes = info->Attributes;
        Priority = info->Priority;
        DefaultPriority = info->DefaultPriority;
        StartTime = info->StartTime;
        UntilTime = info->UntilTime;
        Status = info->Status;
        Jobs = info->cJobs;
        AveragePpm = info->AveragePPM;
    }

    // A driver that cannot be read leaves its fields empty; the printer
    // still counts as read.
    if (DRIVER_INFO_2A *driver = ReadDriverInfo2(PrinterHandle.Get(), buffer)) {
        DriverVersion = driver->cVersion;
        CopyField(DriverInfoName, driver->pName);
        CopyField(Environment, driver->pEnvironment);
        CopyField(DriverPath, driver->pDriverPath);
        CopyField(DataFile, driver->pDataFile);
        CopyField(ConfigFile, driver->pConfigFile);
    }
    return read;
}

int CPrinterInf::MatchInf(CBoundedString inf, CBoundedString model, CBoundedString &manufacturer)
{
    CBoundedString value;
    GetPrivateProfileStringA("Version", "ClassGUID", "", value, CBoundedString::Capacity, inf);
    if (!value.IsEmpty()) {
        if (!value.Equals(PrinterClassGuid))
            return 0;
    } else {
        GetPrivateProfileStringA("Version", "Class", "", value, CBoundedString::Capacity, inf);
        if (value.IsEmpty() || !value.Equals("Printer"))
            return 0;
    }

    CSectionLines makers("Manufacturer", inf);
    while (char *line = makers.Take()) {
        char *right = NextToken(line, '=');
        CBoundedString modelsSection(right ? right : "");
        StripOne(line, '"');
        manufacturer = CBoundedString();
        ExpandToken(line, manufacturer, inf);
        if (modelsSection.IsEmpty())
            modelsSection = manufacturer;

        CSectionLines models(modelsSection, inf);
        while (char *entry = models.Take()) {
            NextToken(entry, '=');
            StripOne(entry, ' ');
            StripOne(entry, '"');
            CBoundedString name;
            ExpandToken(entry, name, inf);
            if (model.Equals(name))
                return 1;
        }
    }
    return 0;
}

int CPrinterInf::FindInf(const char *printerName, char *inf, int infSize, char *manufacturer,
                         int manufacturerSize, char *model, int modelSize)
{
    CBoundedString localInf(inf), localMaker(manufacturer), localModel(model);
    bool found = false;
    {
        CInstalledPrinter printer;
        if (printer.Read(printerName)) {
            localModel = printer.DriverName;
            localInf = CBoundedString();
            GetPrivateProfileStringA(printer.DriverName, "InstallINF", "", localInf,
                                     CBoundedString::Capacity, printer.DataFile);
            found = !localInf.IsEmpty() && MatchInf(localInf, localModel, localMaker);
        }
    }

    if (!found) {
        CFileSpec current;
        current.Resolve(FileSpecCurrent);
        CBoundedString returnTo(current.DirectoryPath());
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
                localInf = CBoundedString(directory.FullPath());
                found = MatchInf(localInf, localModel, localMaker) != 0;
            } while (!found && FindNextFileA(find.Get(), &data));
        }
        SetCurrentDirectoryA(returnTo);
        if (!found)
            return 0;
    }

    // Copied only where it fits; CopyBounded never runs past the size given.
    struct {
        char *Target;
        int Size;
        const CBoundedString &Text;
    } results[] = {{inf, infSize, localInf}, {manufacturer, manufacturerSize, localMaker},
                   {model, modelSize, localModel}};
    for (const auto &result : results)
        if (result.Target && result.Size > 0 && static_cast<size_t>(result.Size) >= result.Text.Length())
            CopyBounded(result.Target, result.Text, static_cast<size_t>(result.Size));
    return 1;
}

namespace {

void QueryText(CRegKey &key, const char *name, char *out)
{
    DWORD type = REG_SZ, size = CBoundedString::Capacity;
    if (!key.QueryValue(name, &type, reinterpret_cast<BYTE *>(out), &size))
        out[0] = 0;
    else
        out[CBoundedString::Capacity - 1] = 0;
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

    // "Enum\<hardware id>\<instance>": the instance, with each & read as a
    // backslash, names the device below Enum that holds the port.
    CBoundedString portDevice("Enum\\");
    size_t instance = 5 + std::strlen(hardwareId) + 1;
    if (instance < keyPath.Length())
        portDevice.Append(keyPath.Text + instance);
    for (char *c = portDevice.Text; *c; ++c)
        if (*c == '&')
            *c = '\\';
    if (key.Open(HKEY_LOCAL_MACHINE, portDevice))
        QueryText(key, "PortName", portName);
    key.Key.Reset();
    return 1;
}
