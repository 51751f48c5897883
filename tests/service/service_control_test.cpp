#include <gtest/gtest.h>

#include <string>

#include "service/service_control.h"
#include "service_test_support.h"

namespace {

TEST(ServiceControl, NoNameOrAMissingServiceFailsAndLeavesNothingOpen)
{
    CServiceControl control;
    SERVICE_STATUS status = {};
    EXPECT_TRUE(control.IsManagerAvailable());
    for (const char *name : {static_cast<const char *>(nullptr), "", "TovrelMissing"}) {
        // Without a name, the question is whether the manager is there.
        EXPECT_EQ(!name || !*name, control.IsInstalled(name)) << name;
        EXPECT_FALSE(control.QueryStatus(name, &status)) << name;
        EXPECT_FALSE(control.IsActive(name)) << name;
        EXPECT_FALSE(control.Start(name, 0, nullptr)) << name;
        EXPECT_FALSE(control.Stop(name)) << name;
        EXPECT_EQ((SC_HANDLE)NULL, control.ServiceHandle) << name;
        EXPECT_EQ((SC_HANDLE)NULL, control.ManagerHandle) << name;
    }
    EXPECT_EQ(static_cast<DWORD>(ERROR_SERVICE_DOES_NOT_EXIST), control.LastError);
}

// The wrapper does not wait, so the test waits for each state change itself.
TEST(ServiceControl, StartsStopsPausesAndContinuesAFixtureService)
{
    const char name[] = "TovrelLife";
    std::string path = FixtureServicePath();
    ServiceCreateInfo info;
    info.ServiceName = name;
    info.DisplayName = "Tovrel Life";
    info.ServiceType = SERVICE_WIN32_OWN_PROCESS;
    info.StartType = SERVICE_DEMAND_START;
    info.BinaryPathName = path.c_str();
    CServiceControl control;
    SERVICE_STATUS status = {};
    ASSERT_TRUE(control.Create(info));
    EXPECT_FALSE(control.IsActive(name)) << "Create starts nothing";
    EXPECT_TRUE(control.Stop(name)) << "nothing to stop is success";
    EXPECT_TRUE(control.Control(name, SERVICE_CONTROL_PAUSE, &status)) << "nothing to pause is success";
    EXPECT_FALSE(control.Control(name, SERVICE_CONTROL_CONTINUE, &status));

    const char *argv[] = {"alpha", "beta gamma"};
    ASSERT_TRUE(control.Start(name, 2, argv));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_EQ("alpha\nbeta gamma\n", ReadText("C:\\tovrel-svc\\TovrelLife.args"));
    EXPECT_TRUE(control.IsActive(name));
    EXPECT_TRUE(control.Start(name, 0, nullptr)) << "a second start is success";
    EXPECT_TRUE(control.Control(name, SERVICE_CONTROL_PAUSE, &status));
    ASSERT_TRUE(WaitForState(name, SERVICE_PAUSED));
    EXPECT_FALSE(control.IsActive(name)) << "a paused service is not active";
    EXPECT_TRUE(control.Control(name, SERVICE_CONTROL_CONTINUE, &status));
    ASSERT_TRUE(WaitForState(name, SERVICE_RUNNING));
    EXPECT_TRUE(control.Stop(name)) << control.LastError;
    EXPECT_TRUE(WaitForState(name, SERVICE_STOPPED));
    EXPECT_EQ((SC_HANDLE)NULL, control.ServiceHandle);
    EXPECT_EQ((SC_HANDLE)NULL, control.ManagerHandle);

    info.DisplayName = "Changed";
    EXPECT_FALSE(control.Create(info)) << "an existing service is not made again";
    EXPECT_EQ("Tovrel Life", ReadServiceConfig(name).DisplayName) << "nor changed";
}

TEST(ServiceControl, CreatePassesEveryFieldAndTheTagByAddress)
{
    ServiceCreateInfo given, defaults;
    given.ServiceName = "TovrelFields";
    given.DisplayName = "Tovrel Fields Service";
    given.DesiredAccess = SERVICE_QUERY_STATUS;
    given.ServiceType = SERVICE_WIN32_OWN_PROCESS;
    given.StartType = SERVICE_DEMAND_START;
    given.ErrorControl = SERVICE_ERROR_IGNORE;
    given.BinaryPathName = "C:\\tovrel-svc\\fields.exe -x";
    given.LoadOrderGroup = "Tovrel Group";
    given.Dependencies = "TovrelDepA\0TovrelDepB\0";
    given.ServiceStartName = ".\\TovrelUser";
    given.Password = "secret";
    defaults.ServiceName = "TovrelDefaults";
    defaults.BinaryPathName = "C:\\tovrel-svc\\defaults.sys";
    defaults.LoadOrderGroup = "Tovrel Group";
    defaults.TagId = 7;
    // Wine records the tag it finds behind the pointer: 7 shows the address
    // went over, 0 that no pointer did.
    const CServiceConfig expected[] = {
        {true, SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE, 0,
         "C:\\tovrel-svc\\fields.exe -x", "Tovrel Group", ".\\TovrelUser", "Tovrel Fields Service"},
        {true, SERVICE_KERNEL_DRIVER, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL, 7, "C:\\tovrel-svc\\defaults.sys",
         "Tovrel Group", "LocalSystem", ""},
    };
    ServiceCreateInfo *infos[] = {&given, &defaults};
    for (int i = 0; i < 2; ++i) {
        CServiceControl control;
        EXPECT_TRUE(control.Create(*infos[i])) << i;
        CServiceConfig config = ReadServiceConfig(infos[i]->ServiceName);
        EXPECT_EQ(expected[i].Found, config.Found) << i;
        EXPECT_EQ(expected[i].ServiceType, config.ServiceType) << i;
        EXPECT_EQ(expected[i].StartType, config.StartType) << i;
        EXPECT_EQ(expected[i].ErrorControl, config.ErrorControl) << i;
        EXPECT_EQ(expected[i].TagId, config.TagId) << i;
        EXPECT_EQ(expected[i].TagId, infos[i]->TagId) << i;
        EXPECT_EQ(expected[i].BinaryPathName, config.BinaryPathName) << i;
        EXPECT_EQ(expected[i].LoadOrderGroup, config.LoadOrderGroup) << i;
        EXPECT_EQ(expected[i].ServiceStartName, config.ServiceStartName) << i;
        EXPECT_EQ(expected[i].DisplayName, config.DisplayName) << i;
    }
    EXPECT_EQ("TovrelDepA", FirstDependency("TovrelFields"));
    EXPECT_EQ("", FirstDependency("TovrelDefaults"));
}

}  // namespace
