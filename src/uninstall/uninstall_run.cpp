#include "uninstall/uninstall_run.h"

#include "record/addreg_line.h"
#include "uninstall/interruption_points.h"
#include "uninstall/uninstall_output.h"

CUninstallRun::CUninstallRun(const UninstallRecord &record, bool whatIf, bool json)
    : TheRecord(record), Values(record.Model), Planning(whatIf), Json(json)
{
    TheClaims.Gather(record.Model);
}

void CUninstallRun::Note(const UninstallItem &item)
{
    Told.push_back(item);
    Counts.Count(item.State);
    if (!Json)
        WriteTextItem(stdout, item);
}

void CUninstallRun::Tell(const UninstallItem &item)
{
    InterruptionPoint(item.Kind.c_str(), item.Subject.c_str());
    Note(item);
}

static bool Settles(Outcome state)
{
    return state == Outcome::Removed || state == Outcome::Absent || state == Outcome::Shared;
}

void CUninstallRun::Settle(UninstallItem item, const char *part, const std::string &valueName)
{
    InterruptionPoint(item.Kind.c_str(), item.Subject.c_str());
    std::string failure;
    if (!Planning && Settles(item.State) && !Values.Forget(part, valueName, failure)) {
        item.Detail += (item.Detail.empty() ? "" : "; ") + failure;
        item.State = Outcome::Failed;
    }
    Note(item);
}

bool IsTextValue(const NamedValue &value)
{
    return value.Type == REG_SZ;
}

// RegistryTypeName says REG_NONE of the types it does not know.
static std::string TypeText(DWORD type)
{
    std::string name = RegistryTypeName(type);
    return type == RegTypeNone || name != RegistryTypeName(RegTypeNone) ? name : "number " + std::to_string(type);
}

UninstallItem RefusedValueType(const char *kind, const NamedValue &value)
{
    return MakeItem(kind, value.Name, Outcome::Refused,
                    "its record value is of type " + TypeText(value.Type) + ", not text as the install writes it");
}
