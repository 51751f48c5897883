#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "message_box.h"
#include "service/service_exports.h"
#include "service_test_support.h"
#include "test_support.h"

namespace {

struct NumberCase {
    const char *Text;
    DWORD Value;
};

TEST(ServiceNumber, DecimalOnly)
{
    const NumberCase cases[] = {
        {"16", 16},         {"983551", 0xF01FF}, {"  3", 3},   {"+2", 2},  {"-1", 0xFFFFFFFFu},
        {"0x10", 0},        {"\"16\"", 0},       {"", 0},      {"abc", 0}, {"12ab", 12},
        {"\t 7 8", 7},
    };
    for (const NumberCase &c : cases)
        EXPECT_EQ(c.Value, ParseServiceNumber(c.Text)) << "[" << c.Text << "]";
}

struct SplitCase {
    const char *Text;
    const char *List;  // entries joined by '|'
};

std::string ReadList(const char *list)
{
    std::string text;
    for (const char *p = list; *p; p += std::strlen(p) + 1)
        text += (text.empty() ? "" : "|") + std::string(p);
    return text;
}

TEST(ServiceDependencies, OnlyTheFirstTwoCommasSplit)
{
    const SplitCase cases[] = {
        {"a", "a"},           {"a,b", "a|b"},          {"a,b,c", "a|b|c"}, {"a,b,c,d", "a|b|c,d"},
        {",,a,b", ",,a|b"},   {"a,,b", "a|,b"},        {"a,", "a"},        {"", ""},
    };
    for (const SplitCase &c : cases) {
        char buffer[64] = {0};
        std::strcpy(buffer, c.Text);
        SplitDependencies(buffer);
        EXPECT_EQ(c.List, ReadList(buffer)) << c.Text;
    }
}

typedef int(WINAPI *NameProc)(const char *);
typedef int(WINAPI *StartProc)(const char *, DWORD, const char **);
typedef int(WINAPI *CreateProc)(ServiceCreateInfo *);
typedef int(WINAPI *NoArgProc)();
typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);

class ServiceExports : public ::testing::Test {
protected:
    void SetUp() override
    {
        Module = LoadLibraryA((BinaryDirectory() + "tovrel.dll").c_str());
        ASSERT_NE((HMODULE)NULL, Module);
    }
    void TearDown() override
    {
        if (Module)
            FreeLibrary(Module);
    }
    template <typename T>
    T Get(const char *name)
    {
        T proc = reinterpret_cast<T>(reinterpret_cast<void *>(GetProcAddress(Module, name)));
        EXPECT_NE(nullptr, proc) << name;
        return proc;
    }
    HMODULE Module = NULL;
};

TEST_F(ServiceExports, PlainExportsDriveAFixtureService)
{
    const char name[] = "TovrelPlain";
    std::string path = FixtureServicePath();
    ServiceCreateInfo info;
    info.ServiceName = name;
    info.ServiceType = SERVICE_WIN32_OWN_PROCESS;
    info.StartType = SERVICE_DEMAND_START;
    info.BinaryPathName = path.c_str();

    EXPECT_EQ(1, Get<NoArgProc>("Service_IsManagerAvailable")());
    EXPECT_EQ(0, Get<NameProc>("Service_IsInstalled")(name));
    EXPECT_EQ(0, Get<NameProc>("Service_Stop")(name)) << "a missing service cannot be stopped";
    ASSERT_EQ(1, Get<CreateProc>("Service_Create")(&info));
    EXPECT_EQ(0, Get<CreateProc>("Service_Create")(&info)) << "it exists now";
    EXPECT_EQ(1, Get<NameProc>("Service_IsInstalled")(name));
    EXPECT_EQ(0, Get<NameProc>("Service_IsActive")(name));

    EXPECT_EQ(1, Get<NameProc>("Service_StopStart")(name)) << "a stopped service is started";
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_EQ(1, Get<NameProc>("Service_IsActive")(name));
    DWORD first = ServiceProcessId(name);

    EXPECT_EQ(1, Get<NameProc>("Service_Stop")(name));
    ASSERT_TRUE(WaitForState(name, SERVICE_STOPPED));
    const char *argv[] = {"one"};
    EXPECT_EQ(1, Get<StartProc>("Service_Start")(name, 1, argv));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_EQ("one\n", ReadText("C:\\tovrel-svc\\TovrelPlain.args"));
    EXPECT_NE(first, ServiceProcessId(name));
    EXPECT_EQ(1, Get<StartProc>("Service_Start")(name, 0, nullptr)) << "already running is success";

    // The start follows the stop at once: the service is still stopping, and
    // the manager's "already running" counts as success.
    EXPECT_EQ(1, Get<NameProc>("Service_StopStart")(name));
    EXPECT_EQ(1, Get<NameProc>("Service_Stop")(name));
    EXPECT_TRUE(WaitForState(name, SERVICE_STOPPED));
}

TEST_F(ServiceExports, RunDllStartStopTakeTheTextAsItStands)
{
    const char name[] = "TovrelText";
    ASSERT_TRUE(CreateFixtureService(name));
    RunDllProc start = Get<RunDllProc>("Service_RunDll_Start");
    RunDllProc stop = Get<RunDllProc>("Service_RunDll_Stop");
    RunDllProc stopStart = Get<RunDllProc>("Service_RunDll_StopStart");
    for (const char *other : {" TovrelText", "TovrelText ", "\"TovrelText\"", "/TovrelText", ""})
        start(NULL, NULL, other, 1);
    start(NULL, NULL, nullptr, 1);
    Sleep(500);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_STOPPED), CurrentState(name)) << "no other text names the service";
    stopStart(NULL, NULL, name, 1);
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    for (const char *other : {" TovrelText", "TovrelText ", "\"TovrelText\""})
        stop(NULL, NULL, other, 1);
    Sleep(500);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_RUNNING), CurrentState(name));
    stop(NULL, NULL, name, 1);
    EXPECT_TRUE(WaitForState(name, SERVICE_STOPPED));
}

std::string RunDll32(const std::string &entryAndArguments)
{
    return "rundll32.exe " + BinaryDirectory() + "tovrel.dll," + entryAndArguments;
}

TEST(ServiceRunDll, StartAndStopThroughRunDll32)
{
    const char name[] = "TovrelRunDll";
    ASSERT_TRUE(CreateFixtureService(name));
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_Start TovrelRunDll"), nullptr));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    DWORD first = ServiceProcessId(name);
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_Stop TovrelRunDll"), nullptr));
    ASSERT_TRUE(WaitForState(name, SERVICE_STOPPED));
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_StopStart TovrelRunDll"), nullptr));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_NE(first, ServiceProcessId(name));
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_Stop TovrelRunDll"), nullptr));
    EXPECT_TRUE(WaitForState(name, SERVICE_STOPPED));
}

struct CreateCase {
    std::string Arguments;
    bool Created;
    const char *Name;
    const char *DisplayName;
    DWORD ServiceType, StartType, ErrorControl;
    std::string Path;
    const char *LoadOrderGroup;
    const char *FirstDependency;  // null: none recorded
};

TEST(ServiceRunDll, CreateReadsEveryKeyThroughRunDll32)
{
    std::string fixture = FixtureServicePath();
    std::string path61 = "C:\\tovrel-svc\\" + std::string(61 - 18, 'p') + ".sys";
    std::string path62 = "C:\\tovrel-svc\\" + std::string(62 - 18, 'p') + ".sys";
    ASSERT_EQ(61u, path61.size());
    const CreateCase cases[] = {
        {"/SERVICE_NAME TovrelAll /DISPLAYNAME Tovrel All /DISPLAYNAME Keys /SRV_TYPE 16 /START_TYPE 3 "
         "/ERROR_CTRL 0 /ACCESS 983551 /PATHNAME " + fixture + " /LOADORDER \"Tovrel Group\" "
         "/DEPENDENCIES DepA,DepB,DepC,DepD /USERNAME LocalSystem /PASSWORD pw",
         true, "TovrelAll", "Tovrel All Keys", 16, 3, 0, fixture, "Tovrel Group", "DepA"},
        {"/service_name TovrelQuoted /displayname \"Quoted Name\" /pathname \"C:\\tovrel-svc/q.sys\" "
         "/dependencies \"DepX,DepY\"",
         true, "TovrelQuoted", "\"Quoted Name\"", 1, 2, 1, "\"C:\\tovrel-svc/q.sys\"", "", "DepX"},
        {"/SERVICE_NAME TovrelBare /START_TYPE /ERROR_CTRL /PATHNAME " + path61, true, "TovrelBare", "", 1, 2, 1,
         path61, "", nullptr},
        {"/SERVICE_NAME TovrelLong /PATHNAME " + path62, false, "TovrelLong", "", 0, 0, 0, "", "", nullptr},
        {"/SERVICE_NAME TovrelHex /SRV_TYPE 0x10 /PATHNAME " + fixture, false, "TovrelHex", "", 0, 0, 0, "", "",
         nullptr},
        {"/SERVICE_NAME TovrelCut /PATHNAME C:/tovrel-svc/cut.sys", true, "TovrelCut", "", 1, 2, 1, "C:", "",
         nullptr},
    };
    for (const CreateCase &c : cases) {
        EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_Create " + c.Arguments), nullptr))
            << c.Arguments;
        CServiceConfig config = ReadServiceConfig(c.Name);
        ASSERT_EQ(c.Created, config.Found) << c.Arguments;
        if (!c.Created)
            continue;
        EXPECT_EQ(c.DisplayName, config.DisplayName) << c.Name;
        EXPECT_EQ(c.ServiceType, config.ServiceType) << c.Name;
        EXPECT_EQ(c.StartType, config.StartType) << c.Name;
        EXPECT_EQ(c.ErrorControl, config.ErrorControl) << c.Name;
        EXPECT_EQ(c.Path, config.BinaryPathName) << c.Name;
        EXPECT_EQ(c.LoadOrderGroup, config.LoadOrderGroup) << c.Name;
        std::vector<std::string> dependencies = ReadDependencies(c.Name);
        if (c.FirstDependency) {
            ASSERT_FALSE(dependencies.empty()) << c.Name;
            EXPECT_EQ(c.FirstDependency, dependencies[0]) << c.Name;
        } else {
            EXPECT_TRUE(dependencies.empty()) << c.Name;
        }
    }
}

TEST(ServiceRunDll, StartStopStopsBeforeAndStartsAfterTheCreation)
{
    const char running[] = "TovrelRestarted";
    ASSERT_TRUE(CreateFixtureService(running));
    ASSERT_TRUE(WaitForState(running, SERVICE_STOPPED));
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_Start TovrelRestarted"), nullptr));
    ASSERT_TRUE(WaitForState(running, SERVICE_RUNNING));
    DWORD first = ServiceProcessId(running);

    std::string fixture = FixtureServicePath();
    // The named service need not be the one created; one that exists already
    // is not changed, and the stop and start happen all the same.
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_Create /SERVICE_NAME TovrelRestarted "
                                                   "/DISPLAYNAME Changed /PATHNAME " + fixture +
                                                   " /SRV_TYPE 16 /STARTSTOP TovrelRestarted"),
                                          nullptr));
    ASSERT_TRUE(WaitForState(running, SERVICE_RUNNING));
    EXPECT_NE(first, ServiceProcessId(running)) << "stopped and started again";
    EXPECT_EQ(running, ReadServiceConfig(running).DisplayName);

    // A service that the same call creates is started at the end.
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Service_RunDll_Create /SERVICE_NAME TovrelNewRun /PATHNAME " +
                                                   fixture + " /SRV_TYPE 16 /START_TYPE 3 /STARTSTOP TovrelNewRun"),
                                          nullptr));
    EXPECT_TRUE(WaitForState("TovrelNewRun", SERVICE_RUNNING));
}

TEST(ServiceRunDll, EmptyTextTakesTheProcessCommandLine)
{
    std::string command = "\"" + BinaryDirectory() + "entry_host.exe\" Service_RunDll_Create /SERVICE_NAME " +
                          "TovrelOwnLine /SRV_TYPE 16 /START_TYPE 3 /PATHNAME " + FixtureServicePath();
    EXPECT_EQ(0x10, RunCollectingDebugOutput(command, nullptr));
    CServiceConfig config = ReadServiceConfig("TovrelOwnLine");
    ASSERT_TRUE(config.Found);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_WIN32_OWN_PROCESS), config.ServiceType);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_DEMAND_START), config.StartType);
    EXPECT_EQ(FixtureServicePath(), config.BinaryPathName);
}

}  // namespace
