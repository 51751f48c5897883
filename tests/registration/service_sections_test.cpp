#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../service/service_test_support.h"
#include "entry/printer_inf.h"

namespace {

const std::string Services = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Acme Laser\\services";

int InstallServices(const std::string &text)
{
    CPrinterInf printer;
    LoadModelInf(printer, ScratchDirectory() + "services.inf", text);
    printer.InstallSection = CBoundedString("Inst");
    return printer.InstallServices();
}

TEST(InstallServices, AddServiceLinesBecomeServicesAndExistingOnesStay)
{
    ASSERT_TRUE(CreateFixtureService("TovrelSvcE"));
    EXPECT_EQ(0, InstallServices("[Inst]\r\nAddService=TovrelSvcA,SvcA\r\n[SvcA]\r\nServiceBinary=C:\\a.sys\r\n"))
        << "no services section";
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Services));
    // An existing service is not changed; a run that creates nothing gives 0.
    const std::string text = "[Inst.Services]\r\nAddService=\"TovrelSvcA\",SvcA\r\nOther=TovrelSvcC,SvcA\r\n"
                             "addservice=TovrelSvcB,SvcB\r\nAddService=TovrelSvcA,SvcB\r\n"
                             "AddService=TovrelSvcC, SvcA\r\nAddService=TovrelSvcD\r\n"
                             "AddService=\"Tovrel\"Q\",SvcB\r\nAddService=TovrelSvcE,SvcB\r\n"
                             "[SvcA]\r\nDisplayName=\"Tovrel Service A\"\r\n"
                             "ServiceBinary=\"C:\\drivers\\%a%.sys\"\r\nLoadOrderGroup=\"Extended Base\"\r\n"
                             "ServiceType=1\r\nStartType=3\r\nErrorControl=0x2\r\n"
                             "[SvcB]\r\nDisplayName=\r\nServiceBinary=C:\\b.sys\r\nStartType=\r\n"
                             "[Strings]\r\na=expanded\r\n";
    EXPECT_EQ(1, InstallServices(text));
    EXPECT_EQ(0, InstallServices(text));
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
        {"TovrelSvcE", SERVICE_WIN32_OWN_PROCESS, 3, 1, "C:\\tovrel-svc\\fixture.exe", "", "TovrelSvcE"},
    };
    for (const auto &c : cases) {
        CServiceConfig config = ReadServiceConfig(c.Name);
        ASSERT_TRUE(config.Found) << c.Name;
        EXPECT_EQ(c.Type, config.ServiceType) << c.Name;
        EXPECT_EQ(c.StartType, config.StartType) << c.Name;
        EXPECT_EQ(c.ErrorControl, config.ErrorControl) << c.Name;
        EXPECT_EQ(c.Binary, config.BinaryPathName) << c.Name;
        EXPECT_EQ(c.Group, config.LoadOrderGroup) << c.Name;
        EXPECT_EQ(c.DisplayName, config.DisplayName) << c.Name;
    }
    // A blank behind the comma names no section, and no comma names none:
    // with no binary the service manager refuses them.
    EXPECT_FALSE(ReadServiceConfig("TovrelSvcC").Found);
    EXPECT_FALSE(ReadServiceConfig("TovrelSvcD").Found);
    // Every line is on record; the registry lists names sorted.
    std::vector<std::string> recorded = StoredValueNames(HKEY_LOCAL_MACHINE, Services);
    std::sort(recorded.begin(), recorded.end());
    EXPECT_EQ((std::vector<std::string>{"Tovrel\"Q", "TovrelSvcA", "TovrelSvcB", "TovrelSvcC", "TovrelSvcD",
                                        "TovrelSvcE"}),
              recorded);
    EXPECT_EQ(std::string("1", 2), ReadStoredValue(HKEY_LOCAL_MACHINE, Services, "TovrelSvcE").Data);
}

}  // namespace
