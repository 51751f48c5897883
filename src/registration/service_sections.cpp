#include "registration/service_sections.h"

#include <cstdlib>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "service/service_control.h"

const char ServicesSectionSuffix[] = ".Services";
const char AddServiceKey[] = "AddService";

namespace {

// The data of a service's uninstall value; its name is what counts.
const char ServiceListed[] = "1";

// One "AddService" line, read into what CreateServiceA wants. The texts are
// read raw: the service manager wants the binary path as it stands, so no
// token or directory id is resolved in them. Info points into the texts, so
// a record is never copied.
struct CServiceRecord {
    CServiceRecord() {}

    CBoundedString Name;
    // The service's own section, named behind the comma; empty without one.
    CBoundedString Section;
    CBoundedString DisplayName;
    CBoundedString BinaryPathName;
    CBoundedString LoadOrderGroup;
    // Zero-filled behind the text, so it reads as a list of one name.
    CBoundedString Dependencies;
    CBoundedString ServiceStartName;
    ServiceCreateInfo Info;

private:
    CServiceRecord(const CServiceRecord &);
    CServiceRecord &operator=(const CServiceRecord &);
};

// "AddService=name,section": the name loses its quotes, the section is kept
// as it stands.
void ReadAddServiceLine(const CInfKey &line, CServiceRecord &service)
{
    service.Name = line.Value;
    const char *section = NextToken(service.Name, ',');
    service.Section = CBoundedString(section ? section : "");
    StripChar(service.Name, '"');
}

// An absent or empty text takes its default: the display name is the key name.
// False when a text was cut: no default stands in for it.
bool ReadServiceTexts(CPrinterInf &inf, CServiceRecord &service)
{
    const struct {
        const char *Key;
        CBoundedString *Out;
        const char *Default;
    } texts[] = {
        {"DisplayName", &service.DisplayName, service.Name},
        {"ServiceBinary", &service.BinaryPathName, ""},
        {"LoadOrderGroup", &service.LoadOrderGroup, ""},
        {"Dependencies", &service.Dependencies, ""},
        {"StartName", &service.ServiceStartName, ""},
    };
    for (const auto &text : texts) {
        // An unnamed section is no lookup at all: the default stands.
        *text.Out = CBoundedString(text.Default);
        if (inf.LookupKey(service.Section, text.Key, *text.Out, text.Default) == KeyCut)
            return false;
        StripChar(*text.Out, '"');
    }
    return true;
}

// Decimal, as atol reads it; an absent or empty number keeps the default of
// ServiceCreateInfo. False when a number's line was cut.
bool ReadServiceNumbers(CPrinterInf &inf, CServiceRecord &service)
{
    const struct {
        const char *Key;
        DWORD *Out;
    } numbers[] = {
        {"ServiceType", &service.Info.ServiceType},
        {"StartType", &service.Info.StartType},
        {"ErrorControl", &service.Info.ErrorControl},
    };
    CInfSection section;
    if (!inf.FindSection(service.Section, section))
        return true;
    for (const auto &number : numbers) {
        CInfKeyList::iterator found;
        if (!inf.FindKey(section, found, number.Key))
            continue;
        if (found->Cut)
            return false;
        if (!found->Value.IsEmpty())
            *number.Out = static_cast<DWORD>(std::atol(found->Value));
    }
    return true;
}

void PointInfoAtTexts(CServiceRecord &service)
{
    service.Info.ServiceName = service.Name;
    service.Info.DisplayName = service.DisplayName;
    service.Info.BinaryPathName = service.BinaryPathName;
    service.Info.LoadOrderGroup = service.LoadOrderGroup;
    service.Info.Dependencies = service.Dependencies;
    service.Info.ServiceStartName = service.ServiceStartName;
}

// A service that exists already is left as it is, unread.
bool InstallService(CPrinterInf &inf, CServiceRecord &service)
{
    CServiceControl control;
    if (control.IsInstalled(service.Name) || !ReadServiceTexts(inf, service) || !ReadServiceNumbers(inf, service))
        return false;
    PointInfoAtTexts(service);
    return control.Create(service.Info);
}

}  // namespace

int CPrinterInf::InstallServices()
{
    CBoundedString sectionName(InstallSection);
    sectionName.Append(ServicesSectionSuffix);
    CInfSection services;
    if (InstallSection.Length() + sizeof ServicesSectionSuffix - 1 > CBoundedString::MaxLength ||
        !FindSection(sectionName, services))
        return 0;

    // Every service listed is recorded, created now or not; a line that was
    // cut lists none.
    bool created = false;
    for (const CInfKey &line : services->second) {
        if (line.Cut || CompareNoCase(line.Name, AddServiceKey) != 0)
            continue;
        CServiceRecord service;
        ReadAddServiceLine(line, service);
        if (InstallService(*this, service))
            created = true;
        LogUninstall(UninstallServices, service.Name, ServiceListed);
    }
    return created ? 1 : 0;
}
