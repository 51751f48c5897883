#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string Services = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Acme Laser\\services";

struct CServiceConfig {
    bool Exists = false;
    DWORD Type = 0, StartType = 0, ErrorControl = 0;
    std::string Binary, Group, DisplayName, StartName;
};

CServiceConfig QueryConfig(const char *name)
{
    CServiceConfig config;
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_ALL_ACCESS);
    if (!manager)
        return config;
    if (SC_HANDLE service = OpenServiceA(manager, name, SERVICE_QUERY_CONFIG)) {
        std::vector<char> buffer(8192);
        DWORD needed = 0;
        QUERY_SERVICE_CONFIGA *info = reinterpret_cast<QUERY_SERVICE_CONFIGA *>(buffer.data());
        if (QueryServiceConfigA(service, info, static_cast<DWORD>(buffer.size()), &needed)) {
            config.Exists = true;
            config.Type = info->dwServiceType;
            config.StartType = info->dwStartType;
            config.ErrorControl = info->dwErrorControl;
            config.Binary = info->lpBinaryPathName ? info->lpBinaryPathName : "";
            config.Group = info->lpLoadOrderGroup ? info->lpLoadOrderGroup : "";
            config.DisplayName = info->lpDisplayName ? info->lpDisplayName : "";
            config.StartName = info->lpServiceStartName ? info->lpServiceStartName : "";
        }
        CloseServiceHandle(service);
    }
    CloseServiceHandle(manager);
    return config;
}

void DeleteServiceByName(const char *name)
{
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_ALL_ACCESS);
    if (!manager)
        return;
    if (SC_HANDLE service = OpenServiceA(manager, name, DELETE)) {
        DeleteService(service);
        CloseServiceHandle(service);
    }
    CloseServiceHandle(manager);
}

const char *const Names[] = {"TovrelSvcA", "TovrelSvcB", "TovrelSvcC", "TovrelSvcD", "TovrelSvcE",
                             "Tovrel\"Q"};

class InstallServicesTest : public ::testing::Test {
protected:
    void SetUp() override { Clean(); }
    void TearDown() override { Clean(); }
    void Clean()
    {
        for (const char *name : Names)
            DeleteServiceByName(name);
        DeleteKeyTree(HKEY_LOCAL_MACHINE, "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data");
    }
    void Load(const std::string &text)
    {
        std::string path = ScratchDirectory() + "services.inf";
        WriteText(path, "[Version]\r\nClass=Printer\r\n" + text);
        ASSERT_TRUE(Printer.Load(path.c_str()));
        Printer.Model = CBoundedString("Acme Laser");
        Printer.InstallSection = CBoundedString("Inst");
    }
    CPrinterInf Printer;
};

TEST_F(InstallServicesTest, AddServiceLinesBecomeServices)
{
    Load("[Inst.Services]\r\n"
         "AddService=\"TovrelSvcA\",SvcA\r\n"
         "Other=TovrelSvcC,SvcA\r\n"
         "addservice=TovrelSvcB,SvcB\r\n"
         "AddService=TovrelSvcA,SvcB\r\n"
         "AddService=TovrelSvcC, SvcA\r\n"
         "AddService=TovrelSvcD\r\n"
         "AddService=\"Tovrel\"Q\",SvcB\r\n"
         "[SvcA]\r\n"
         "DisplayName=\"Tovrel Service A\"\r\n"
         "ServiceBinary=\"C:\\drivers\\%a%.sys\"\r\n"
         "LoadOrderGroup=\"Extended Base\"\r\n"
         "ServiceType=1\r\n"
         "StartType=3\r\n"
         "ErrorControl=0x2\r\n"
         "[SvcB]\r\n"
         "DisplayName=\r\n"
         "ServiceBinary=C:\\b.sys\r\n"
         "StartType=\r\n"
         "[Strings]\r\na=expanded\r\n");
    EXPECT_EQ(1, Printer.InstallServices());

    const struct {
        const char *Name;
        DWORD Type, StartType, ErrorControl;
        const char *Binary, *Group, *DisplayName;
    } cases[] = {
        // Values are raw: no token is expanded, and hex reads as 0.
        {"TovrelSvcA", 1, 3, 0, "C:\\drivers\\%a%.sys", "Extended Base", "Tovrel Service A"},
        // Empty values and absent keys give the defaults.
        {"TovrelSvcB", 1, 2, 1, "C:\\b.sys", "", "TovrelSvcB"},
        {"Tovrel\"Q", 1, 2, 1, "C:\\b.sys", "", "Tovrel\"Q"},
    };
    for (const auto &c : cases) {
        CServiceConfig config = QueryConfig(c.Name);
        ASSERT_TRUE(config.Exists) << c.Name;
        EXPECT_EQ(c.Type, config.Type) << c.Name;
        EXPECT_EQ(c.StartType, config.StartType) << c.Name;
        EXPECT_EQ(c.ErrorControl, config.ErrorControl) << c.Name;
        EXPECT_EQ(c.Binary, config.Binary) << c.Name;
        EXPECT_EQ(c.Group, config.Group) << c.Name;
        EXPECT_EQ(c.DisplayName, config.DisplayName) << c.Name;
        EXPECT_EQ("", config.StartName) << c.Name;
    }
    // A blank behind the comma names no section, and no comma names none:
    // with no binary the service manager refuses them.
    EXPECT_FALSE(QueryConfig("TovrelSvcC").Exists);
    EXPECT_FALSE(QueryConfig("TovrelSvcD").Exists);

    // The registry lists value names sorted, not in the order written.
    std::vector<std::string> recorded = StoredValueNames(HKEY_LOCAL_MACHINE, Services);
    std::sort(recorded.begin(), recorded.end());
    EXPECT_EQ((std::vector<std::string>{"Tovrel\"Q", "TovrelSvcA", "TovrelSvcB", "TovrelSvcC", "TovrelSvcD"}),
              recorded);
}

TEST_F(InstallServicesTest, AnExistingServiceIsLeftAlone)
{
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_ALL_ACCESS);
    ASSERT_TRUE(manager != NULL);
    SC_HANDLE service = CreateServiceA(manager, "TovrelSvcE", "Was There", SERVICE_ALL_ACCESS,
                                       SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE,
                                       "C:\\old.sys", NULL, NULL, NULL, NULL, NULL);
    ASSERT_TRUE(service != NULL);
    CloseServiceHandle(service);
    CloseServiceHandle(manager);

    Load("[Inst.Services]\r\nAddService=TovrelSvcE,SvcE\r\n"
         "[SvcE]\r\nDisplayName=New\r\nServiceBinary=C:\\new.sys\r\nStartType=2\r\n");
    EXPECT_EQ(0, Printer.InstallServices());
    CServiceConfig config = QueryConfig("TovrelSvcE");
    EXPECT_EQ("C:\\old.sys", config.Binary);
    EXPECT_EQ("Was There", config.DisplayName);
    EXPECT_EQ(DWORD(SERVICE_DEMAND_START), config.StartType);
    EXPECT_EQ(std::string("1", 2), ReadStoredValue(HKEY_LOCAL_MACHINE, Services, "TovrelSvcE").Data);
}

TEST_F(InstallServicesTest, WithoutAServicesSectionNothingHappens)
{
    Load("[Inst]\r\nAddService=TovrelSvcA,SvcA\r\n[SvcA]\r\nServiceBinary=C:\\a.sys\r\n");
    EXPECT_EQ(0, Printer.InstallServices());
    EXPECT_FALSE(QueryConfig("TovrelSvcA").Exists);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Services));
}

}  // namespace
