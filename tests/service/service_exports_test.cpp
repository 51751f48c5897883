#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "service/service_exports.h"
#include "test_support.h"

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

// What the service manager holds for a service, read without the library:
// type, start, error control, binary, group, display name and state, as one
// text; the first dependency from the registry, since Wine 8 garbles the
// manager's own answer and keeps only the first name of a list.
std::string Service(const std::string &name)
{
    SC_HANDLE manager = OpenSCManagerA(NULL, NULL, SC_MANAGER_CONNECT);
    SC_HANDLE service = OpenServiceA(manager, name.c_str(), SERVICE_QUERY_CONFIG | SERVICE_QUERY_STATUS);
    union {
        QUERY_SERVICE_CONFIGA Config;
        char Bytes[8192];
    } buffer;
    SERVICE_STATUS status = {};
    DWORD needed = 0;
    std::string text = "none";
    if (service && QueryServiceConfigA(service, &buffer.Config, sizeof buffer, &needed) &&
        QueryServiceStatus(service, &status)) {
        const QUERY_SERVICE_CONFIGA &c = buffer.Config;
        text = std::to_string(c.dwServiceType) + "," + std::to_string(c.dwStartType) + "," +
               std::to_string(c.dwErrorControl) + "," + c.lpBinaryPathName + "," + c.lpLoadOrderGroup + "," +
               c.lpDisplayName + "," + std::to_string(status.dwCurrentState) + "," +
               ReadStoredValue(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\" + name, "DependOnService")
                   .Data.c_str();
    }
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
    return text;
}

// Each row is one rundll32 call (or, for "entry_host", the export called with
// an empty text so that the process command line is parsed), and what the
// named service is afterwards. A state is waited for: the wrapper does not wait.
TEST(ServiceRunDll, EveryEntryAndKeyThroughRunDll32)
{
    CreateDirectoryA("C:\\tovrel-svc", NULL);
    CopyFileA((BinaryDirectory() + "fixture_service.exe").c_str(), "C:\\tovrel-svc\\fixture.exe", TRUE);
    const std::string fixture = "C:\\tovrel-svc\\fixture.exe", stopped = ",1,", running = ",4,";
    const std::string run = "16,3,1," + fixture + ",,";
    const std::string path61 = "C:\\tovrel-svc\\" + std::string(61 - 18, 'p') + ".sys";
    const std::string path62 = "C:\\tovrel-svc\\" + std::string(62 - 18, 'p') + ".sys";
    const struct {
        std::string Call, Name, Expected;
    } cases[] = {
        {"Create /SERVICE_NAME TovrelAll /DISPLAYNAME Tovrel All /DISPLAYNAME Keys /SRV_TYPE 16 /START_TYPE 3 "
         "/ERROR_CTRL 0 /ACCESS 983551 /PATHNAME " + fixture + " /LOADORDER \"Tovrel Group\" "
         "/DEPENDENCIES DepA,DepB,DepC,DepD /USERNAME LocalSystem /PASSWORD pw",
         "TovrelAll", "16,3,0," + fixture + ",Tovrel Group,Tovrel All Keys" + stopped + "DepA"},
        {"Create /service_name TovrelQuoted /displayname \"Quoted Name\" /pathname \"C:\\tovrel-svc/q.sys\" "
         "/dependencies \"DepX,DepY\"",
         "TovrelQuoted", "1,2,1,\"C:\\tovrel-svc/q.sys\",,\"Quoted Name\"" + stopped + "DepX"},
        {"Create /SERVICE_NAME TovrelBare /START_TYPE /ERROR_CTRL /PATHNAME " + path61, "TovrelBare",
         "1,2,1," + path61 + ",," + stopped},
        {"Create /SERVICE_NAME TovrelLong /PATHNAME " + path62, "TovrelLong", "none"},
        {"Create /SERVICE_NAME TovrelHex /SRV_TYPE 0x10 /PATHNAME " + fixture, "TovrelHex", "none"},
        {"Create /SERVICE_NAME TovrelCut /PATHNAME C:/tovrel-svc/cut.sys", "TovrelCut", "1,2,1,C:,," + stopped},
        // The start is the last step of a create that names the service.
        {"Create /SERVICE_NAME TovrelRun /PATHNAME " + fixture + " /SRV_TYPE 16 /START_TYPE 3 /STARTSTOP TovrelRun",
         "TovrelRun", run + running},
        {"Stop \"TovrelRun\"", "TovrelRun", run + running},  // the text is the name as it stands
        {"Stop TovrelRun", "TovrelRun", run + stopped},
        {"Start TovrelRun", "TovrelRun", run + running},
        // An existing service is not changed; it is stopped and started all the same.
        {"Create /SERVICE_NAME TovrelRun /DISPLAYNAME Changed /PATHNAME C:\\x.sys /STARTSTOP TovrelRun", "TovrelRun",
         run + running},
        {"StopStart TovrelRun", "TovrelRun", run + running},
        {"Stop TovrelRun", "TovrelRun", run + stopped},
        {"entry_host Create /SERVICE_NAME TovrelOwnLine /SRV_TYPE 16 /START_TYPE 3 /PATHNAME " + fixture,
         "TovrelOwnLine", run + stopped},
    };
    for (const auto &c : cases) {
        const bool host = c.Call.compare(0, 10, "entry_host") == 0;
        const std::string command = host ? "\"" + BinaryDirectory() + "entry_host.exe\" Service_RunDll_" + c.Call.substr(11)
                                         : "rundll32.exe " + BinaryDirectory() + "tovrel.dll,Service_RunDll_" + c.Call;
        EXPECT_EQ(host ? 0x10 : 0, RunProcess(command)) << c.Call;
        std::string seen = Service(c.Name);
        for (DWORD start = GetTickCount(); seen != c.Expected && GetTickCount() - start < 20000; Sleep(100))
            seen = Service(c.Name);
        EXPECT_EQ(c.Expected, seen) << c.Call;
    }
}

}  // namespace
