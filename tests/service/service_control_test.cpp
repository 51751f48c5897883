#include <gtest/gtest.h>

#include <string>

#include "service/service_control.h"
#include "service_test_support.h"
#include "test_support.h"

namespace {

void ExpectClosed(const CServiceControl &control, const char *after)
{
    EXPECT_EQ((SC_HANDLE)NULL, control.ServiceHandle) << after;
    EXPECT_EQ((SC_HANDLE)NULL, control.ManagerHandle) << after;
}

TEST(ServiceControl, NullAndEmptyNamesOpenOnlyTheManager)
{
    CServiceControl control;
    EXPECT_TRUE(control.IsManagerAvailable());
    ExpectClosed(control, "IsManagerAvailable");
    for (const char *name : {static_cast<const char *>(nullptr), ""}) {
        SERVICE_STATUS status = {};
        EXPECT_TRUE(control.IsInstalled(name)) << "answers as IsManagerAvailable";
        EXPECT_FALSE(control.QueryStatus(name, &status));
        EXPECT_FALSE(control.IsActive(name));
        EXPECT_FALSE(control.Start(name, 0, nullptr));
        EXPECT_FALSE(control.Stop(name));
        ServiceCreateInfo info;
        info.ServiceName = name;
        info.BinaryPathName = "C:\\drv\\none.sys";
        EXPECT_FALSE(control.Create(info));
        ExpectClosed(control, "an operation on no service");
    }
    EXPECT_EQ(static_cast<DWORD>(ERROR_INVALID_HANDLE), control.LastError)
        << "a control sent with no service open fails, and the error is kept";
    EXPECT_TRUE(control.Open(""));
    EXPECT_NE((SC_HANDLE)NULL, control.ManagerHandle) << "Open leaves the manager to the caller";
    EXPECT_EQ((SC_HANDLE)NULL, control.ServiceHandle);
}

TEST(ServiceControl, AMissingServiceIsNotInstalledAndCannotBeStoppedOrStarted)
{
    CServiceControl control;
    SERVICE_STATUS status = {};
    EXPECT_FALSE(control.IsInstalled("TovrelMissing"));
    EXPECT_EQ(static_cast<DWORD>(ERROR_SERVICE_DOES_NOT_EXIST), control.LastError);
    EXPECT_FALSE(control.QueryStatus("TovrelMissing", &status));
    EXPECT_FALSE(control.IsActive("TovrelMissing"));
    EXPECT_FALSE(control.Stop("TovrelMissing"));
    EXPECT_FALSE(control.Start("TovrelMissing", 0, nullptr));
    ExpectClosed(control, "operations on a missing service");
    EXPECT_TRUE(control.IsManagerAvailable());
    EXPECT_EQ(static_cast<DWORD>(ERROR_SERVICE_DOES_NOT_EXIST), control.LastError) << "a success clears nothing";
}

// One object, one service, through its whole life; the wrapper does not wait,
// so the test waits for each state change itself.
TEST(ServiceControl, StartsStopsPausesAndAnswersForAFixtureService)
{
    const char name[] = "TovrelLife";
    CServiceControl control;
    ServiceCreateInfo info;
    std::string path = FixtureServicePath();
    info.ServiceName = name;
    info.DisplayName = "Tovrel Life";
    info.ServiceType = SERVICE_WIN32_OWN_PROCESS;
    info.StartType = SERVICE_DEMAND_START;
    info.BinaryPathName = path.c_str();
    ASSERT_TRUE(control.Create(info));
    ExpectClosed(control, "Create");
    EXPECT_EQ(static_cast<DWORD>(SERVICE_STOPPED), CurrentState(name)) << "Create starts nothing";
    EXPECT_FALSE(control.IsActive(name));

    EXPECT_TRUE(control.Stop(name)) << "nothing to stop is success";
    EXPECT_EQ(static_cast<DWORD>(ERROR_SERVICE_NOT_ACTIVE), control.LastError);
    SERVICE_STATUS status = {};
    EXPECT_TRUE(control.Control(name, SERVICE_CONTROL_PAUSE, &status)) << "nothing to pause is success";
    EXPECT_FALSE(control.Control(name, SERVICE_CONTROL_CONTINUE, &status));
    EXPECT_FALSE(control.Control(name, SERVICE_CONTROL_INTERROGATE, &status));

    ASSERT_TRUE(control.Start(name, 0, nullptr));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_TRUE(control.IsActive(name));
    EXPECT_TRUE(control.Start(name, 0, nullptr)) << "a second start is success";
    EXPECT_TRUE(control.QueryStatus(name, &status));
    EXPECT_EQ(static_cast<DWORD>(SERVICE_RUNNING), status.dwCurrentState);

    EXPECT_TRUE(control.Control(name, SERVICE_CONTROL_PAUSE, &status));
    ASSERT_TRUE(WaitForState(name, SERVICE_PAUSED));
    EXPECT_FALSE(control.IsActive(name)) << "a paused service is not active";
    EXPECT_TRUE(control.Control(name, SERVICE_CONTROL_CONTINUE, &status));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_TRUE(control.IsActive(name));

    EXPECT_TRUE(control.Stop(name));
    ASSERT_TRUE(WaitForState(name, SERVICE_STOPPED));
    EXPECT_FALSE(control.IsActive(name));
    ExpectClosed(control, "the whole life");

    info.DisplayName = "Changed";
    DWORD before = control.LastError;
    EXPECT_FALSE(control.Create(info)) << "an existing service is not made again";
    EXPECT_EQ(before, control.LastError);
    EXPECT_EQ("Tovrel Life", ReadServiceConfig(name).DisplayName) << "nor changed";
}

TEST(ServiceControl, StartPassesItsArguments)
{
    const char name[] = "TovrelArgs";
    ASSERT_TRUE(CreateFixtureService(name));
    const char *argv[] = {"alpha", "beta gamma"};
    CServiceControl control;
    ASSERT_TRUE(control.Start(name, 2, argv));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_EQ("alpha\nbeta gamma\n", ReadText("C:\\tovrel-svc\\TovrelArgs.args"));
    EXPECT_TRUE(control.Stop(name));
    EXPECT_TRUE(WaitForState(name, SERVICE_STOPPED));
}

TEST(ServiceControl, CreatePassesEveryField)
{
    ServiceCreateInfo info;
    info.ServiceName = "TovrelFields";
    info.DisplayName = "Tovrel Fields Service";
    info.DesiredAccess = SERVICE_QUERY_STATUS;
    info.ServiceType = SERVICE_WIN32_OWN_PROCESS;
    info.StartType = SERVICE_DEMAND_START;
    info.ErrorControl = SERVICE_ERROR_IGNORE;
    info.BinaryPathName = "C:\\tovrel-svc\\fields.exe -x";
    info.LoadOrderGroup = "Tovrel Group";
    info.Dependencies = "TovrelDepA\0TovrelDepB\0";
    info.ServiceStartName = ".\\TovrelUser";
    info.Password = "secret";
    CServiceControl control;
    ASSERT_TRUE(control.Create(info));
    CServiceConfig config = ReadServiceConfig("TovrelFields");
    ASSERT_TRUE(config.Found);
    EXPECT_EQ("Tovrel Fields Service", config.DisplayName);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_WIN32_OWN_PROCESS), config.ServiceType);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_DEMAND_START), config.StartType);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_ERROR_IGNORE), config.ErrorControl);
    EXPECT_EQ("C:\\tovrel-svc\\fields.exe -x", config.BinaryPathName);
    EXPECT_EQ("Tovrel Group", config.LoadOrderGroup);
    EXPECT_EQ(".\\TovrelUser", config.ServiceStartName);
    EXPECT_EQ(0u, config.TagId);
    // Wine 8 loses the list behind its first name on the way from the A to
    // the W form (the rest of the value is stray memory), so only the first
    // name is asserted.
    std::vector<std::string> dependencies = ReadDependencies("TovrelFields");
    ASSERT_FALSE(dependencies.empty());
    EXPECT_EQ("TovrelDepA", dependencies[0]);
}

TEST(ServiceControl, DefaultsMakeAnAutomaticKernelDriver)
{
    ServiceCreateInfo info;
    info.ServiceName = "TovrelDefaults";
    info.BinaryPathName = "C:\\tovrel-svc\\defaults.sys";
    CServiceControl control;
    ASSERT_TRUE(control.Create(info));
    CServiceConfig config = ReadServiceConfig("TovrelDefaults");
    ASSERT_TRUE(config.Found);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_KERNEL_DRIVER), config.ServiceType);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_AUTO_START), config.StartType);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_ERROR_NORMAL), config.ErrorControl);
    EXPECT_EQ("", config.LoadOrderGroup);
    EXPECT_TRUE(ReadDependencies("TovrelDefaults").empty());
}

// A tag of 0 sends no tag pointer; any other value sends the field's address.
TEST(ServiceControl, TagIdIsPassedByAddressWhenNotZero)
{
    struct {
        const char *Name;
        DWORD Tag;
    } const cases[] = {{"TovrelTagNone", 0}, {"TovrelTagGiven", 7}};
    for (const auto &c : cases) {
        ServiceCreateInfo info;
        info.ServiceName = c.Name;
        info.BinaryPathName = "C:\\tovrel-svc\\tag.sys";
        info.LoadOrderGroup = "Tovrel Tagged";
        info.TagId = c.Tag;
        CServiceControl control;
        bool created = control.Create(info);
        CServiceConfig config = ReadServiceConfig(c.Name);
        EXPECT_TRUE(created) << c.Name;
        // Wine records the tag that it finds behind the pointer: 7 shows that
        // the address went over, 0 that no pointer did.
        EXPECT_EQ(c.Tag, config.TagId) << c.Name;
        EXPECT_EQ(c.Tag, info.TagId) << c.Name;
    }
}

}  // namespace
