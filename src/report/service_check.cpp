#include <windows.h>

#include "record/text_compare.h"
#include "report/baseline_fields.h"
#include "report/service_check.h"

static const char Kind[] = "service";

static std::string Changes(const ServiceFacts &now, const ServiceFacts &was)
{
    std::string changes;
    if (!EqualNoCase(now.BinaryPath, was.BinaryPath))
        changes += "binary \"" + now.BinaryPath + "\", was \"" + was.BinaryPath + "\"";
    if (now.StartType != was.StartType)
        changes += std::string(changes.empty() ? "" : ", ") + "start type was " + StartTypeText(was.StartType);
    if (now.Type != was.Type)
        changes += std::string(changes.empty() ? "" : ", ") + "type " + std::to_string(now.Type) + ", was "
                   + std::to_string(was.Type);
    return changes;
}

// Binary, start type and type against the baseline.
static Verdict AgainstBaseline(const std::string &name, const ServiceFacts &now, const CBaseline &baseline)
{
    if (!baseline.Exists())
        return {ItemState::Unchecked, "; binary and start type not compared: no baseline"};
    BaselineFields fields;
    ServiceFacts was;
    EntryState entry = baseline.Entry(BaselineServices, name, fields);
    bool readable = entry == EntryState::Found && ServiceOfFields(fields, was);
    return BaselineVerdict(entry, readable, readable ? Changes(now, was) : std::string());
}

ReportItem CheckService(const std::string &name, const CBaseline &baseline)
{
    ServiceFacts facts = ReadServiceFacts(name);
    switch (facts.Outcome) {
    case ServiceRead::NoManager: return MakeItem(Kind, name, ItemState::Unchecked, "no service control manager");
    case ServiceRead::NotInstalled: return MakeItem(Kind, name, ItemState::Drifted, "not installed");
    case ServiceRead::CannotOpen:
        return MakeItem(Kind, name, ItemState::Unchecked, "cannot be opened, error " + std::to_string(facts.Error));
    case ServiceRead::Unreadable:
        return MakeItem(Kind, name, ItemState::Unchecked, "installed; its state cannot be read");
    case ServiceRead::Read: break;
    }
    std::string detail =
        std::string("installed, ") + StartTypeText(facts.StartType) + ", " + RunStateText(facts.RunState);
    Verdict verdict = AgainstBaseline(name, facts, baseline);
    // A disabled service never runs, whatever anybody meant; an automatic
    // one that does not run has stopped since the system started it. A
    // demand service is stopped until somebody starts it.
    bool broken = facts.StartType == SERVICE_DISABLED
                  || (facts.StartType == SERVICE_AUTO_START && facts.RunState != SERVICE_RUNNING);
    return MakeItem(Kind, name, broken ? ItemState::Drifted : verdict.State, detail + verdict.Text);
}
