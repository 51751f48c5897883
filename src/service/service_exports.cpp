#include <windows.h>

#include <cctype>
#include <cstring>

#include "entry/command_line.h"
#include "inf/bounded_string.h"
#include "service/service_control.h"
#include "service/service_exports.h"

DWORD ParseServiceNumber(const char *text)
{
    const unsigned char *p = reinterpret_cast<const unsigned char *>(text);
    while (std::isspace(*p))
        ++p;
    bool negative = false;
    if (*p == '+' || *p == '-')
        negative = *p++ == '-';
    DWORD value = 0;
    while (*p >= '0' && *p <= '9')
        value = value * 10 + (*p++ - '0');
    return negative ? 0u - value : value;
}

namespace {

// Only this many commas become NULs; a further name stays joined to the last.
const int DependencyCommasSplit = 2;

}  // namespace

void SplitDependencies(char *text)
{
    char *p = text;
    for (int pass = 0; pass < DependencyCommasSplit; ++pass) {
        while (*p == ',')
            ++p;
        while (*p && *p != ',')
            ++p;
        if (!*p)
            return;
        *p++ = 0;
    }
}

extern "C" int WINAPI Service_IsManagerAvailable(void)
{
    CServiceControl control;
    return control.IsManagerAvailable() ? 1 : 0;
}

extern "C" int WINAPI Service_IsInstalled(const char *name)
{
    CServiceControl control;
    return control.IsInstalled(name) ? 1 : 0;
}

extern "C" int WINAPI Service_IsActive(const char *name)
{
    CServiceControl control;
    return control.IsActive(name) ? 1 : 0;
}

extern "C" int WINAPI Service_Create(ServiceCreateInfo *info)
{
    CServiceControl control;
    return info && control.Create(*info) ? 1 : 0;
}

extern "C" int WINAPI Service_Start(const char *name, DWORD argc, const char **argv)
{
    CServiceControl control;
    return control.Start(name, argc, argv) ? 1 : 0;
}

extern "C" int WINAPI Service_Stop(const char *name)
{
    CServiceControl control;
    return control.Stop(name) ? 1 : 0;
}

extern "C" int WINAPI Service_StopStart(const char *name)
{
    CServiceControl control;
    // No wait between the two: a service still stopping answers the start
    // with "already running", which counts as success.
    control.Stop(name);
    return control.Start(name, 0, NULL) ? 1 : 0;
}

namespace {

enum { ServiceValueSize = 64 };

// One key of the command line and where its value goes: a number of the
// record, a text of it, or, for the stop-and-start target, neither.
struct CServiceKeyRow {
    const char *Key;
    DWORD *Number;
    const char **Text;
    char Value[ServiceValueSize];
};

// A text field points straight into its row, so the rows must outlive the
// record's use.
template <size_t Count>
void ReadRows(const CCommandLine &line, CServiceKeyRow (&rows)[Count])
{
    for (CServiceKeyRow &row : rows) {
        // Values too long for the row are dropped whole, never cut.
        if (!line.GetValues(row.Key, row.Value, sizeof row.Value, NULL, ' '))
            continue;
        StripChar(row.Value, ' ');
        if (row.Number)
            *row.Number = ParseServiceNumber(row.Value);
        else
            *row.Text = row.Value;
    }
}

// Both point into their rows' buffers, whose tails are zero: the list that
// the split leaves ends with two NULs.
void PrepareListTexts(ServiceCreateInfo &info)
{
    if (info.Dependencies) {
        char *list = const_cast<char *>(info.Dependencies);
        StripOne(list, '"');
        SplitDependencies(list);
    }
    if (info.LoadOrderGroup)
        StripOne(const_cast<char *>(info.LoadOrderGroup), '"');
}

}  // namespace

extern "C" void CALLBACK Service_RunDll_Create(HWND, HINSTANCE, const char *commandLine, int)
{
    CCommandLine line(commandLine);
    ServiceCreateInfo info;
    const char *startStop = NULL;
    CServiceKeyRow rows[] = {
        {"ACCESS", &info.DesiredAccess, NULL, {0}},
        {"ERROR_CTRL", &info.ErrorControl, NULL, {0}},
        {"SRV_TYPE", &info.ServiceType, NULL, {0}},
        {"START_TYPE", &info.StartType, NULL, {0}},
        {"PATHNAME", NULL, &info.BinaryPathName, {0}},
        {"DEPENDENCIES", NULL, &info.Dependencies, {0}},
        {"DISPLAYNAME", NULL, &info.DisplayName, {0}},
        {"LOADORDER", NULL, &info.LoadOrderGroup, {0}},
        {"PASSWORD", NULL, &info.Password, {0}},
        {"SERVICE_NAME", NULL, &info.ServiceName, {0}},
        {"USERNAME", NULL, &info.ServiceStartName, {0}},
        {"STARTSTOP", NULL, &startStop, {0}},
    };
    ReadRows(line, rows);

    // The named service is stopped first and started last, whatever the
    // creation gave.
    bool restart = startStop && *startStop;
    if (restart)
        Service_Stop(startStop);
    PrepareListTexts(info);
    Service_Create(&info);
    if (restart)
        Service_Start(startStop, 0, NULL);
}

// The command text is the service name as it stands: not trimmed, not split.
extern "C" void CALLBACK Service_RunDll_Start(HWND, HINSTANCE, const char *commandLine, int)
{
    Service_Start(commandLine, 0, NULL);
}

extern "C" void CALLBACK Service_RunDll_Stop(HWND, HINSTANCE, const char *commandLine, int)
{
    Service_Stop(commandLine);
}

extern "C" void CALLBACK Service_RunDll_StopStart(HWND, HINSTANCE, const char *commandLine, int)
{
    Service_StopStart(commandLine);
}
