#include "record/system_family.h"
#include "record/text_compare.h"
#include "uninstall/spooler_environments.h"
#include "uninstall/spooler_removal.h"
#include "uninstall/windows_error.h"

static const char MonitorKind[] = "monitor";
static const char ProcessorKind[] = "processor";
static const char MonitorNameValue[] = "Language Monitor Name";
static const char ProcessorNameValue[] = "Print Processor Name";
// The print processor that the system ships: never the model's to take.
static const char SystemProcessor[] = "winprint";

static bool MonitorListed(const std::string &name, bool &listed)
{
    SpoolerList<MONITOR_INFO_2A> monitors;
    if (!ListMonitors(monitors))
        return false;
    listed = false;
    for (const MONITOR_INFO_2A &monitor : monitors)
        listed = listed || EqualNoCase(SpoolerText(monitor.pName), name);
    return true;
}

static bool ProcessorListed(const std::string &name, bool &listed)
{
    SpoolerList<PRINTPROCESSOR_INFO_1A> processors;
    if (!ListProcessors(NativeEnvironment(), processors))
        return false;
    listed = false;
    for (const PRINTPROCESSOR_INFO_1A &processor : processors)
        listed = listed || EqualNoCase(SpoolerText(processor.pName), name);
    return true;
}

typedef bool (*ListedFunction)(const std::string &name, bool &listed);
typedef BOOL (*DeleteFunction)(const std::string &name);

// What the spooler lists before and after the deletion decides.
static UninstallItem RemoveListed(const char *kind, const std::string &name, ListedFunction isListed,
                                  DeleteFunction remove, bool whatIf)
{
    bool listed = false;
    if (!isListed(name, listed))
        return MakeItem(kind, name, Outcome::Failed, "the spooler's list cannot be read, " + LastErrorText());
    if (!listed)
        return MakeItem(kind, name, Outcome::Absent, "");
    if (whatIf)
        return MakeItem(kind, name, Outcome::Planned, "");
    std::string failure = remove(name) ? "still listed after its deletion" : LastErrorText();
    if (!isListed(name, listed))
        return MakeItem(kind, name, Outcome::Failed, "the spooler's list cannot be read again, " + LastErrorText());
    return listed ? MakeItem(kind, name, Outcome::Failed, failure) : MakeItem(kind, name, Outcome::Removed, "");
}

static BOOL DeleteNamedMonitor(const std::string &name)
{
    return DeleteMonitorA(NULL, NULL, const_cast<char *>(name.c_str()));
}

static BOOL DeleteNamedProcessor(const std::string &name)
{
    return DeletePrintProcessorA(NULL, const_cast<char *>(NativeEnvironment()), const_cast<char *>(name.c_str()));
}

// Kept while another driver, printer or model's record still names it.
static void RemoveNamed(CUninstallRun &run, const char *kind, const char *valueName, ClaimKind claim,
                        ListedFunction isListed, DeleteFunction remove)
{
    const NamedValue *value = FindModelValue(run.Record(), valueName);
    if (!value || value->Text.empty())
        return;
    std::string by;
    Claim claimed = run.Claims().Of(claim, value->Text, by);
    if (!IsTextValue(*value))
        run.Tell(RefusedValueType(kind, *value));
    else if (claim == ClaimKind::Processor && EqualNoCase(value->Text, SystemProcessor))
        run.Tell(MakeItem(kind, value->Text, Outcome::Shared, "the system's own print processor"));
    else if (claimed != Claim::Free)
        run.Tell(MakeItem(kind, value->Text, claimed == Claim::Claimed ? Outcome::Shared : Outcome::Failed, by));
    else
        run.Tell(RemoveListed(kind, value->Text, isListed, remove, run.WhatIf()));
}

void RemoveMonitor(CUninstallRun &run)
{
    RemoveNamed(run, MonitorKind, MonitorNameValue, ClaimKind::Monitor, MonitorListed, DeleteNamedMonitor);
}

void RemoveProcessor(CUninstallRun &run)
{
    RemoveNamed(run, ProcessorKind, ProcessorNameValue, ClaimKind::Processor, ProcessorListed, DeleteNamedProcessor);
}
