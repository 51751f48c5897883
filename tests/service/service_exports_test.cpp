#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "message_box.h"
#include "service/service_control.h"
#include "service/service_exports.h"
#include "service_test_support.h"

namespace {

TEST(ServiceNumber, DecimalOnly)
{
    const struct {
        const char *Text;
        DWORD Value;
    } cases[] = {
        {"16", 16}, {"983551", 0xF01FF}, {"  3", 3}, {"+2", 2},   {"-1", 0xFFFFFFFFu}, {"0x10", 0},
        {"\"16\"", 0}, {"", 0},          {"abc", 0}, {"12ab", 12}, {"\t 7 8", 7},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.Value, ParseServiceNumber(c.Text)) << "[" << c.Text << "]";
}

TEST(ServiceDependencies, OnlyTheFirstTwoCommasSplit)
{
    const struct {
        const char *Text, *List;  // entries joined by '|'
    } cases[] = {
        {"a", "a"},         {"a,b", "a|b"},     {"a,b,c", "a|b|c"}, {"a,b,c,d", "a|b|c,d"},
        {",,a,b", ",,a|b"}, {"a,,b", "a|,b"},   {"a,", "a"},        {"", ""},
    };
    for (const auto &c : cases) {
        char buffer[64] = {0};
        std::strcpy(buffer, c.Text);
        SplitDependencies(buffer);
        std::string list;
        for (const char *p = buffer; *p; p += std::strlen(p) + 1)
            list += (list.empty() ? "" : "|") + std::string(p);
        EXPECT_EQ(c.List, list) << c.Text;
    }
}

template <typename T>
T Export(const char *name)
{
    static HMODULE module = LoadLibraryA((BinaryDirectory() + "tovrel.dll").c_str());
    T proc = reinterpret_cast<T>(reinterpret_cast<void *>(GetProcAddress(module, name)));
    EXPECT_NE(nullptr, proc) << name;
    return proc;
}
typedef int(WINAPI *NameProc)(const char *);
typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);

TEST(ServiceExports, RunDllStartStopTakeTheTextAsItStands)
{
    const char name[] = "TovrelText";
    ASSERT_TRUE(CreateFixtureService(name));
    RunDllProc start = Export<RunDllProc>("Service_RunDll_Start"), stop = Export<RunDllProc>("Service_RunDll_Stop");
    for (const char *other : {" TovrelText", "TovrelText ", "\"TovrelText\"", "/TovrelText", ""})
        start(NULL, NULL, other, 1);
    start(NULL, NULL, nullptr, 1);
    Sleep(500);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_STOPPED), ServiceStatus(name).dwCurrentState) << "no other text names it";
    Export<RunDllProc>("Service_RunDll_StopStart")(NULL, NULL, name, 1);
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    for (const char *other : {" TovrelText", "TovrelText ", "\"TovrelText\""})
        stop(NULL, NULL, other, 1);
    Sleep(500);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_RUNNING), ServiceStatus(name).dwCurrentState);
    stop(NULL, NULL, name, 1);
    EXPECT_TRUE(WaitForState(name, SERVICE_STOPPED));
}

int RunDll32(const std::string &entryAndArguments)
{
    return RunCollectingDebugOutput("rundll32.exe " + BinaryDirectory() + "tovrel.dll," + entryAndArguments,
                                    nullptr);
}

enum Via { ByControl, ByExport, ByRunDll32 };
enum Action { Start, Stop, StopStart, Pause, Continue };

// One call through one of the three ways in, 1 for success. rundll32 says
// nothing of the entry's outcome, so its rows count on the state alone.
int Call(Via via, Action action, const char *name)
{
    static const char *const entries[] = {"Start", "Stop", "StopStart"};
    const char *argv[] = {"alpha", "beta gamma"};
    CServiceControl control;
    SERVICE_STATUS status = {};
    if (via == ByRunDll32)
        return RunDll32(std::string("Service_RunDll_") + entries[action] + " " + name) == 0;
    if (via == ByExport && action == Start)
        return Export<int(WINAPI *)(const char *, DWORD, const char **)>("Service_Start")(name, 2, argv);
    if (via == ByExport)
        return Export<NameProc>(action == Stop ? "Service_Stop" : "Service_StopStart")(name);
    if (action == Start)
        return control.Start(name, 2, argv);
    if (action == Stop)
        return control.Stop(name);
    return control.Control(name, action == Pause ? SERVICE_CONTROL_PAUSE : SERVICE_CONTROL_CONTINUE, &status);
}

// The wrapper does not wait, so the test waits for each state change itself.
TEST(ServiceLife, StartsAndStopsThroughTheWrapperTheExportsAndRunDll32)
{
    const char name[] = "TovrelLife", missing[] = "TovrelMissing";
    std::string path = FixtureServicePath();
    ServiceCreateInfo info;
    info.ServiceName = name;
    info.DisplayName = "Tovrel Life";
    info.ServiceType = SERVICE_WIN32_OWN_PROCESS;
    info.StartType = SERVICE_DEMAND_START;
    info.BinaryPathName = path.c_str();
    auto create = Export<int(WINAPI *)(ServiceCreateInfo *)>("Service_Create");
    NameProc isInstalled = Export<NameProc>("Service_IsInstalled"), isActive = Export<NameProc>("Service_IsActive");
    EXPECT_EQ(1, Export<int(WINAPI *)()>("Service_IsManagerAvailable")());
    EXPECT_EQ(0, isInstalled(name));
    ASSERT_EQ(1, create(&info));
    EXPECT_EQ(1, isInstalled(name));
    info.DisplayName = "Changed";
    EXPECT_FALSE(CServiceControl().Create(info)) << "an existing service is not made again";
    EXPECT_EQ(0, create(&info));
    EXPECT_EQ("Tovrel Life", ReadServiceConfig(name).DisplayName) << "nor changed";

    const struct {
        Via Through;
        Action Do;
        const char *Name;
        int Result;
        DWORD State;  // 0: not waited for
    } steps[] = {
        {ByControl, Stop, missing, 0, 0},          {ByExport, Stop, missing, 0, 0},
        {ByControl, Start, missing, 0, 0},         {ByControl, Stop, name, 1, SERVICE_STOPPED},
        {ByExport, Stop, name, 1, SERVICE_STOPPED}, {ByControl, Pause, name, 1, SERVICE_STOPPED},
        {ByControl, Continue, name, 0, SERVICE_STOPPED}, {ByControl, Start, name, 1, SERVICE_RUNNING},
        {ByControl, Start, name, 1, SERVICE_RUNNING}, {ByExport, Start, name, 1, SERVICE_RUNNING},
        {ByControl, Pause, name, 1, SERVICE_PAUSED}, {ByControl, Continue, name, 1, SERVICE_RUNNING},
        {ByControl, Stop, name, 1, SERVICE_STOPPED}, {ByExport, StopStart, name, 1, SERVICE_RUNNING},
        {ByExport, Stop, name, 1, SERVICE_STOPPED}, {ByExport, Start, name, 1, SERVICE_RUNNING},
        // The start follows the stop at once: the manager's "already running"
        // for a service still stopping counts as success.
        {ByExport, StopStart, name, 1, 0},         {ByExport, Stop, name, 1, SERVICE_STOPPED},
        {ByRunDll32, Start, name, 1, SERVICE_RUNNING}, {ByRunDll32, Stop, name, 1, SERVICE_STOPPED},
        {ByRunDll32, StopStart, name, 1, SERVICE_RUNNING}, {ByRunDll32, Stop, name, 1, SERVICE_STOPPED},
    };
    DWORD process = 0, state = SERVICE_STOPPED;
    for (size_t i = 0; i < sizeof steps / sizeof *steps; ++i) {
        const auto &step = steps[i];
        DeleteFileA("C:\\tovrel-svc\\TovrelLife.args");
        EXPECT_EQ(step.Result, Call(step.Through, step.Do, step.Name)) << i;
        if (!step.State)
            continue;
        ASSERT_TRUE(WaitForState(name, step.State)) << i;
        EXPECT_EQ(step.State == SERVICE_RUNNING, isActive(name) == 1) << i << ": a paused service is not active";
        if (step.State == SERVICE_RUNNING && state == SERVICE_STOPPED) {
            EXPECT_NE(process, ServiceStatus(name).dwProcessId) << i << ": a new run of the service";
            process = ServiceStatus(name).dwProcessId;
            if (step.Through != ByRunDll32 && step.Do == Start) {
                EXPECT_EQ("alpha\nbeta gamma\n", ReadText("C:\\tovrel-svc\\TovrelLife.args")) << i;
            }
        }
        state = step.State;
    }
}

TEST(ServiceRunDll, CreateReadsEveryKeyThroughRunDll32)
{
    std::string fixture = FixtureServicePath();
    std::string path61 = "C:\\tovrel-svc\\" + std::string(61 - 18, 'p') + ".sys";
    std::string path62 = "C:\\tovrel-svc\\" + std::string(62 - 18, 'p') + ".sys";
    const struct {
        std::string Arguments;
        CServiceConfig Expected;  // Found false: not created
        const char *FirstDependency;
    } cases[] = {
        {"/SERVICE_NAME TovrelAll /DISPLAYNAME Tovrel All /DISPLAYNAME Keys /SRV_TYPE 16 /START_TYPE 3 "
         "/ERROR_CTRL 0 /ACCESS 983551 /PATHNAME " + fixture + " /LOADORDER \"Tovrel Group\" "
         "/DEPENDENCIES DepA,DepB,DepC,DepD /USERNAME LocalSystem /PASSWORD pw",
         {true, 16, 3, 0, 0, fixture, "Tovrel Group", "LocalSystem", "Tovrel All Keys"}, "DepA"},
        {"/service_name TovrelQuoted /displayname \"Quoted Name\" /pathname \"C:\\tovrel-svc/q.sys\" "
         "/dependencies \"DepX,DepY\"",
         {true, 1, 2, 1, 0, "\"C:\\tovrel-svc/q.sys\"", "", "", "\"Quoted Name\""}, "DepX"},
        {"/SERVICE_NAME TovrelBare /START_TYPE /ERROR_CTRL /PATHNAME " + path61,
         {true, 1, 2, 1, 0, path61, "", "", ""}, ""},
        {"/SERVICE_NAME TovrelLong /PATHNAME " + path62, {}, ""},
        {"/SERVICE_NAME TovrelHex /SRV_TYPE 0x10 /PATHNAME " + fixture, {}, ""},
        {"/SERVICE_NAME TovrelCut /PATHNAME C:/tovrel-svc/cut.sys", {true, 1, 2, 1, 0, "C:", "", "", ""}, ""},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(0, RunDll32("Service_RunDll_Create " + c.Arguments)) << c.Arguments;
        std::string name = c.Arguments.substr(14, c.Arguments.find(' ', 14) - 14);
        CServiceConfig config = ReadServiceConfig(name);
        ASSERT_EQ(c.Expected.Found, config.Found) << name;
        if (!config.Found)
            continue;
        EXPECT_EQ(c.Expected.DisplayName, config.DisplayName) << name;
        EXPECT_EQ(c.Expected.ServiceType, config.ServiceType) << name;
        EXPECT_EQ(c.Expected.StartType, config.StartType) << name;
        EXPECT_EQ(c.Expected.ErrorControl, config.ErrorControl) << name;
        EXPECT_EQ(c.Expected.BinaryPathName, config.BinaryPathName) << name;
        EXPECT_EQ(c.Expected.LoadOrderGroup, config.LoadOrderGroup) << name;
        EXPECT_EQ(c.FirstDependency, FirstDependency(name)) << name;
        if (!c.Expected.ServiceStartName.empty()) {
            EXPECT_EQ(c.Expected.ServiceStartName, config.ServiceStartName) << name;
        }
    }
}

TEST(ServiceRunDll, StartStopStopsBeforeAndStartsAfterTheCreation)
{
    const char running[] = "TovrelRestarted";
    std::string fixture = FixtureServicePath();
    ASSERT_TRUE(CreateFixtureService(running));
    EXPECT_EQ(0, RunDll32("Service_RunDll_Start TovrelRestarted"));
    ASSERT_TRUE(WaitForState(running, SERVICE_RUNNING));
    DWORD first = ServiceStatus(running).dwProcessId;
    // One that exists already is not changed; the stop and start happen all the same.
    EXPECT_EQ(0, RunDll32("Service_RunDll_Create /SERVICE_NAME TovrelRestarted /DISPLAYNAME Changed /PATHNAME " +
                          fixture + " /SRV_TYPE 16 /STARTSTOP TovrelRestarted"));
    ASSERT_TRUE(WaitForState(running, SERVICE_RUNNING));
    EXPECT_NE(first, ServiceStatus(running).dwProcessId) << "stopped and started again";
    EXPECT_EQ(running, ReadServiceConfig(running).DisplayName);
    // A service that the same call creates is started at the end.
    EXPECT_EQ(0, RunDll32("Service_RunDll_Create /SERVICE_NAME TovrelNewRun /PATHNAME " + fixture +
                          " /SRV_TYPE 16 /START_TYPE 3 /STARTSTOP TovrelNewRun"));
    EXPECT_TRUE(WaitForState("TovrelNewRun", SERVICE_RUNNING));
}

TEST(ServiceRunDll, EmptyTextTakesTheProcessCommandLine)
{
    std::string command = "\"" + BinaryDirectory() + "entry_host.exe\" Service_RunDll_Create /SERVICE_NAME " +
                          "TovrelOwnLine /SRV_TYPE 16 /START_TYPE 3 /PATHNAME " + FixtureServicePath();
    EXPECT_EQ(0x10, RunCollectingDebugOutput(command, nullptr));
    CServiceConfig config = ReadServiceConfig("TovrelOwnLine");
    EXPECT_EQ(static_cast<DWORD>(SERVICE_WIN32_OWN_PROCESS), config.ServiceType);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_DEMAND_START), config.StartType);
    EXPECT_EQ(FixtureServicePath(), config.BinaryPathName);
}

}  // namespace
