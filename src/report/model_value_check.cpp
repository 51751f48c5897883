#include <windows.h>

#include "record/spooler_lists.h"
#include "record/system_family.h"
#include "record/text_compare.h"
#include "report/file_facts.h"
#include "report/model_value_check.h"

static const char Kind[] = "model";
static const DWORD ProcessorDirectoryLevel = 1;

static std::string Quoted(const std::string &text)
{
    return "\"" + text + "\"";
}

static std::string TextOrEmpty(const char *text)
{
    return text ? text : "";
}

static std::string CannotList(const char *what)
{
    return std::string("the spooler's ") + what + " cannot be listed, error " + std::to_string(GetLastError());
}

// A driver that could not be looked for is not missing.
static ReportItem NoDriver(const NamedValue &value, const DriverRecord &driver)
{
    if (!driver.Listed)
        return MakeItem(Kind, value.Name, ItemState::Unchecked,
                        Quoted(value.Text) + ", the spooler's drivers cannot be listed");
    return MakeItem(Kind, value.Name, ItemState::Drifted, Quoted(value.Text) + ", the spooler has no such driver");
}

// A driver file: the spooler's path for it ends in the recorded name, and
// the file is there.
static ReportItem CheckDriverFile(const NamedValue &value, const DriverRecord &driver, const std::string &field)
{
    if (!driver.Found)
        return NoDriver(value, driver);
    const std::string &path = field;
    if (!EqualNoCase(FileNameOf(path), value.Text))
        return MakeItem(Kind, value.Name, ItemState::Drifted, Quoted(value.Text) + ", the driver has " + Quoted(path));
    if (!FileIsPresent(path, nullptr))
        return MakeItem(Kind, value.Name, ItemState::Drifted, Quoted(value.Text) + ", " + path + " missing");
    return MakeItem(Kind, value.Name, ItemState::Held, Quoted(value.Text) + ", the driver's " + path + " present");
}

static ReportItem CheckDriverText(const NamedValue &value, const DriverRecord &driver, const std::string &field)
{
    if (!driver.Found)
        return NoDriver(value, driver);
    if (!EqualNoCase(field, value.Text))
        return MakeItem(Kind, value.Name, ItemState::Drifted, Quoted(value.Text) + ", the driver has " + Quoted(field));
    return MakeItem(Kind, value.Name, ItemState::Held, Quoted(value.Text) + ", as the driver has it");
}

static ReportItem CheckMonitorName(const NamedValue &value, const DriverRecord &driver)
{
    SpoolerList<MONITOR_INFO_2A> monitors;
    if (!ListMonitors(monitors))
        return MakeItem(Kind, value.Name, ItemState::Unchecked, Quoted(value.Text) + ", " + CannotList("monitors"));
    for (const MONITOR_INFO_2A &monitor : monitors)
        if (EqualNoCase(TextOrEmpty(monitor.pName), value.Text))
            return CheckDriverText(value, driver, driver.MonitorName);
    return MakeItem(Kind, value.Name, ItemState::Drifted, Quoted(value.Text) + ", no such monitor in the spooler");
}

static ReportItem CheckMonitorFile(const NamedValue &value)
{
    SpoolerList<MONITOR_INFO_2A> monitors;
    if (!ListMonitors(monitors))
        return MakeItem(Kind, value.Name, ItemState::Unchecked, Quoted(value.Text) + ", " + CannotList("monitors"));
    for (const MONITOR_INFO_2A &monitor : monitors)
        if (EqualNoCase(FileNameOf(TextOrEmpty(monitor.pDLLName)), value.Text))
            return MakeItem(Kind, value.Name, ItemState::Held,
                            Quoted(value.Text) + ", the library of monitor " + Quoted(TextOrEmpty(monitor.pName)));
    return MakeItem(Kind, value.Name, ItemState::Drifted, Quoted(value.Text) + ", no monitor of the spooler uses it");
}

static ReportItem CheckProcessorName(const NamedValue &value, const char *environment)
{
    SpoolerList<PRINTPROCESSOR_INFO_1A> processors;
    if (!ListProcessors(environment, processors))
        return MakeItem(Kind, value.Name, ItemState::Unchecked, Quoted(value.Text) + ", " + CannotList("processors"));
    for (const PRINTPROCESSOR_INFO_1A &processor : processors)
        if (EqualNoCase(TextOrEmpty(processor.pName), value.Text))
            return MakeItem(Kind, value.Name, ItemState::Held, Quoted(value.Text) + ", installed");
    return MakeItem(Kind, value.Name, ItemState::Drifted, Quoted(value.Text) + ", no such print processor");
}

// The spooler loads a processor from its processor directory; a built-in
// one such as winprint lives in the system directory instead.
static ReportItem FindProcessorFile(const NamedValue &value, const char *environment)
{
    char directories[2][MAX_PATH] = {"", ""};
    DWORD needed = 0;
    if (!GetPrintProcessorDirectoryA(NULL, const_cast<char *>(environment), ProcessorDirectoryLevel,
                                     reinterpret_cast<BYTE *>(directories[0]), MAX_PATH, &needed))
        directories[0][0] = '\0';
    UINT length = GetSystemDirectoryA(directories[1], MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        directories[1][0] = '\0';
    for (const char *directory : directories) {
        std::string path = std::string(directory) + "\\" + value.Text;
        if (*directory && FileIsPresent(path, nullptr))
            return MakeItem(Kind, value.Name, ItemState::Held, Quoted(value.Text) + ", " + path + " present");
    }
    return MakeItem(Kind, value.Name, ItemState::Drifted,
                    Quoted(value.Text) + ", in neither the processor nor the system directory");
}

// The 9x spooler lists its print processors but keeps their files nowhere
// this report can rely on (under Wine in no directory at all): there the
// processor stands when the spooler lists the recorded name for the
// driver's environment.
static ReportItem CheckProcessorFile(const NamedValue &value, const char *environment, const UninstallRecord &record)
{
    if (IsNtFamily())
        return FindProcessorFile(value, environment);
    const NamedValue *name = FindModelValue(record, "Print Processor Name");
    if (!name || name->Text.empty())
        return MakeItem(Kind, value.Name, ItemState::Unchecked,
                        Quoted(value.Text) + ", with no processor name on record to ask the spooler for");
    ReportItem listed = CheckProcessorName(*name, environment);
    std::string detail = Quoted(value.Text) + ", the file of processor " + Quoted(name->Text);
    if (listed.State != ItemState::Held)
        return MakeItem(Kind, value.Name, listed.State, detail + ": " + listed.Detail);
    return MakeItem(Kind, value.Name, ItemState::Held,
                    detail + ", which the spooler lists for \"" + environment + "\"");
}

ReportItem CheckModelValue(const NamedValue &value, const DriverRecord &driver, const UninstallRecord &record)
{
    const std::string &name = value.Name;
    if (EqualNoCase(name, "PnP ID"))
        return MakeItem(Kind, name, ItemState::Unchecked, Quoted(value.Text) + ", kept nowhere but in the record");
    if (value.Text.empty())
        return MakeItem(Kind, name, ItemState::Held, "empty: the install gave nothing for it");
    if (EqualNoCase(name, "Driver File"))
        return CheckDriverFile(value, driver, driver.DriverPath);
    if (EqualNoCase(name, "Data File"))
        return CheckDriverFile(value, driver, driver.DataFile);
    if (EqualNoCase(name, "Config File"))
        return CheckDriverFile(value, driver, driver.ConfigFile);
    if (EqualNoCase(name, "Help File"))
        return CheckDriverFile(value, driver, driver.HelpFile);
    if (EqualNoCase(name, "Default Data Type"))
        return CheckDriverText(value, driver, driver.DefaultDataType);
    if (EqualNoCase(name, "Language Monitor Name"))
        return CheckMonitorName(value, driver);
    if (EqualNoCase(name, "Language Monitor File"))
        return CheckMonitorFile(value);
    if (EqualNoCase(name, "Print Processor Name"))
        return CheckProcessorName(value, driver.Environment.c_str());
    if (EqualNoCase(name, "Print Processor File"))
        return CheckProcessorFile(value, driver.Environment.c_str(), record);
    return MakeItem(Kind, name, ItemState::Unchecked, Quoted(value.Text));
}
