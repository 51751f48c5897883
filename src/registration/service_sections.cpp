#include "registration/service_sections.h"

#include <cstdlib>

#include "entry/printer_inf.h"
#include "files/uninstall_data.h"
#include "service/service_control.h"

const char ServicesSectionSuffix[] = ".Services";
const char AddServiceKey[] = "AddService";

namespace {

// The texts of one service, read raw: the service manager wants the binary
// path as it stands, so no token or directory id is resolved in them.
struct CServiceTexts {
    CBoundedString DisplayName;
    CBoundedString BinaryPathName;
    CBoundedString LoadOrderGroup;
    // Zero-filled behind the text, so it reads as a list of one name.
    CBoundedString Dependencies;
    CBoundedString ServiceStartName;
};

}  // namespace

int CPrinterInf::InstallServices()
{
    CBoundedString sectionName(InstallSection);
    sectionName.Append(ServicesSectionSuffix);
    CInfSection services;
    if (!FindSection(sectionName, services))
        return 0;

    bool created = false;
    for (const CInfKey &line : services->second) {
        if (CompareNoCase(line.Name, AddServiceKey) != 0)
            continue;
        CBoundedString name(line.Value);
        const char *ownSection = NextToken(name.Text, ',');
        if (!ownSection)
            ownSection = "";
        StripChar(name.Text, '"');

        CServiceControl control;
        if (!control.IsInstalled(name)) {
            CServiceTexts texts;
            const struct {
                const char *Key;
                CBoundedString *Out;
                const char *Default;
            } textKeys[] = {
                {"DisplayName", &texts.DisplayName, name},
                {"ServiceBinary", &texts.BinaryPathName, ""},
                {"LoadOrderGroup", &texts.LoadOrderGroup, ""},
                {"Dependencies", &texts.Dependencies, ""},
                {"StartName", &texts.ServiceStartName, ""},
            };
            for (const auto &key : textKeys) {
                // An unnamed section is no lookup at all: the default stands.
                *key.Out = CBoundedString(key.Default);
                LookupKey(ownSection, key.Key, *key.Out, key.Default);
                StripChar(*key.Out, '"');
            }

            ServiceCreateInfo info;
            const struct {
                const char *Key;
                DWORD *Out;
            } numberKeys[] = {
                {"ServiceType", &info.ServiceType},
                {"StartType", &info.StartType},
                {"ErrorControl", &info.ErrorControl},
            };
            CInfSection section;
            if (FindSection(ownSection, section)) {
                for (const auto &key : numberKeys) {
                    CInfKeyList::iterator found;
                    if (FindKey(section, found, key.Key) && !found->Value.IsEmpty())
                        *key.Out = static_cast<DWORD>(std::atol(found->Value));
                }
            }

            info.ServiceName = name;
            info.DisplayName = texts.DisplayName;
            info.BinaryPathName = texts.BinaryPathName;
            info.LoadOrderGroup = texts.LoadOrderGroup;
            info.Dependencies = texts.Dependencies;
            info.ServiceStartName = texts.ServiceStartName;
            if (control.Create(info))
                created = true;
        }
        LogUninstall(UninstallServices, name, "1");
    }
    return created ? 1 : 0;
}
