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
        EXPECT_FALSE(control.ServiceHandle.IsValid()) << name;
        EXPECT_FALSE(control.ManagerHandle.IsValid()) << name;
    }
    EXPECT_EQ(static_cast<DWORD>(ERROR_SERVICE_DOES_NOT_EXIST), control.LastError);
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
