#include "uninstall/shared_claims.h"

#include "record/shortcut_place.h"
#include "record/text_compare.h"
#include "uninstall/spooler_environments.h"
#include "uninstall/windows_error.h"

static const char MonitorNameValue[] = "Language Monitor Name";
static const char ProcessorNameValue[] = "Print Processor Name";

static std::string ClaimKey(ClaimKind kind, const std::string &key)
{
    return std::to_string(static_cast<int>(kind)) + "|" + LowerCase(key);
}

static std::string WithoutOuterBackslashes(const std::string &text)
{
    size_t first = text.find_first_not_of('\\');
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of('\\') - first + 1);
}

std::string RegistryValueKey(const AddRegLine &line)
{
    return line.Root + "\\" + WithoutOuterBackslashes(line.Subkey) + "\\" + line.ValueName;
}

std::string LibraryKey(const NamedValue &library)
{
    return FileNameOf(library.Text.empty() ? library.Name : library.Text);
}

void CSharedClaims::Add(ClaimKind kind, const std::string &key, const std::string &by)
{
    Claims.insert(std::make_pair(ClaimKey(kind, key), by));
}

Claim CSharedClaims::Of(ClaimKind kind, const std::string &key, std::string &by) const
{
    auto found = Claims.find(ClaimKey(kind, key));
    if (found != Claims.end()) {
        by = found->second;
        return Claim::Claimed;
    }
    by = Unknowable;
    return Unknowable.empty() ? Claim::Free : Claim::Unknown;
}

void CSharedClaims::GatherRecord(const UninstallRecord &record)
{
    std::string by = "listed by the record of \"" + record.Model + "\"";
    if (!record.Unreadable.empty())
        Unknowable = "the record of \"" + record.Model + "\" cannot be read whole";
    for (const NamedValue &file : record.Files)
        Add(ClaimKind::File, file.Name, by);
    for (const NamedValue &service : record.Services)
        Add(ClaimKind::Service, service.Name, by);
    for (const NamedValue &line : record.Registry)
        Add(ClaimKind::RegistryValue, RegistryValueKey(ParseAddRegLine(line.Name)), by);
    for (const NamedValue &library : record.Unregister)
        Add(ClaimKind::Library, LibraryKey(library), by);
    for (const NamedValue &line : record.Shortcuts) {
        ShortcutPlace place;
        if (PlaceOfShortcut(ParseShortcutLine(line.Name), place) == PlaceLookup::Found)
            Add(ClaimKind::Link, place.Link, by);
    }
    if (const NamedValue *monitor = FindModelValue(record, MonitorNameValue))
        Add(ClaimKind::Monitor, monitor->Text, by);
    if (const NamedValue *processor = FindModelValue(record, ProcessorNameValue))
        Add(ClaimKind::Processor, processor->Text, by);
}

void CSharedClaims::GatherDriver(const DRIVER_INFO_3A &driver, const char *environment,
                                 std::map<std::string, std::string> &monitors)
{
    std::string by = "used by driver \"" + SpoolerText(driver.pName) + "\" in \"" + environment + "\"";
    for (const std::string &file : DriverFiles(driver))
        Add(ClaimKind::File, file, by);
    if (driver.pMonitorName && *driver.pMonitorName) {
        Add(ClaimKind::Monitor, driver.pMonitorName, by);
        monitors.insert(std::make_pair(LowerCase(driver.pMonitorName), by));
    }
}

void CSharedClaims::GatherDrivers(const std::string &model)
{
    std::map<std::string, std::string> monitors;
    for (int i = 0; i < SpoolerEnvironmentCount; ++i) {
        SpoolerList<DRIVER_INFO_3A> drivers;
        DWORD error = 0;
        if (!ListEnvironmentDrivers(SpoolerEnvironments[i], drivers, error))
            Unknowable = std::string("the spooler's drivers cannot be listed, ") + ErrorText(error);
        for (const DRIVER_INFO_3A &driver : drivers)
            if (!EqualNoCase(SpoolerText(driver.pName), model))
                GatherDriver(driver, SpoolerEnvironments[i], monitors);
    }
    GatherMonitorFiles(monitors);
}

// The library of a monitor that another driver uses stays with it.
void CSharedClaims::GatherMonitorFiles(const std::map<std::string, std::string> &monitors)
{
    SpoolerList<MONITOR_INFO_2A> list;
    char system[MAX_PATH] = "";
    UINT length = GetSystemDirectoryA(system, MAX_PATH);
    if (!ListMonitors(list) || length == 0 || length >= MAX_PATH) {
        Unknowable = "the spooler's monitors cannot be listed, " + LastErrorText();
        return;
    }
    for (const MONITOR_INFO_2A &monitor : list) {
        auto user = monitors.find(LowerCase(SpoolerText(monitor.pName)));
        std::string library = SpoolerText(monitor.pDLLName);
        if (user != monitors.end() && !library.empty())
            Add(ClaimKind::File, library.find('\\') == std::string::npos ? std::string(system) + "\\" + library : library,
                user->second);
    }
}

void CSharedClaims::GatherPrinters(const std::string &model)
{
    SpoolerList<PRINTER_INFO_2A> printers;
    if (!ListLocalPrinters(printers)) {
        Unknowable = "the spooler's printers cannot be listed, " + LastErrorText();
        return;
    }
    for (const PRINTER_INFO_2A &printer : printers)
        if (!EqualNoCase(SpoolerText(printer.pDriverName), model) && printer.pPrintProcessor)
            Add(ClaimKind::Processor, printer.pPrintProcessor,
                "used by printer \"" + SpoolerText(printer.pPrinterName) + "\"");
}

void CSharedClaims::Gather(const std::string &model)
{
    std::vector<UninstallRecord> others;
    LONG error = ERROR_SUCCESS;
    if (!ReadOtherRecords(model, others, error))
        Unknowable = "the other models' records cannot be listed, " + ErrorText(error);
    for (const UninstallRecord &record : others)
        GatherRecord(record);
    GatherDrivers(model);
    GatherPrinters(model);
}
