#include <gtest/gtest.h>

#include <string>

#include "debug_output.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);

const char DeviceKey[] = "SYSTEM\\TovrelTestDevice";

std::string CurrentDirectory()
{
    char dir[MAX_PATH] = {0};
    GetCurrentDirectoryA(sizeof dir, dir);
    return dir;
}

// The command text is the device key, then after the first blank the working
// directory; ConfigFlags becomes four zero bytes whenever the key opened. A
// description of 259 characters is read whole: discovery finds the INF in the
// working directory that offers that model, and Open reports on it.
TEST(VendorInstaller, ClearsConfigFlagsAndMovesToTheWorkingDirectory)
{
    HMODULE module = LoadLibraryA((BinaryDirectory() + "tovrel.dll").c_str());
    ASSERT_NE((HMODULE)NULL, module);
    RunDllProc entry =
        reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(GetProcAddress(module, "VendorInstaller")));
    ASSERT_NE(nullptr, entry);
    CreateDirectoryA("C:\\tovrel vendor work", NULL);
    const std::string longModel = "Acme" + std::string(255, 'x');
    WriteText("C:\\tovrel vendor work\\long.inf", "[Version]\r\nClass=Printer\r\n[Manufacturer]\r\nAcme=Models\r\n"
                                                  "[Models]\r\n%M%=Inst\r\n[Strings]\r\nM=" + longModel + "\r\n");
    const struct {
        bool Device;
        const char *Text, *Directory;  // null: the directory stays
        std::string Description;
        bool OpensInf;
    } cases[] = {
        {true, "SYSTEM\\TovrelTestDevice C:\\tovrel vendor work", "C:\\tovrel vendor work", "ACME LASER 2000", false},
        {true, "SYSTEM\\TovrelTestDevice", nullptr, "ACME LASER 2000", false},
        {false, "SYSTEM\\TovrelTestDevice C:\\", "C:\\", "", false},
        {true, "SYSTEM\\TovrelTestDevice C:\\tovrel vendor work", "C:\\tovrel vendor work", longModel, true},
    };
    for (const auto &c : cases) {
        RegDeleteKeyA(HKEY_LOCAL_MACHINE, DeviceKey);
        if (c.Device) {
            HKEY key = NULL;
            ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExA(HKEY_LOCAL_MACHINE, DeviceKey, 0, NULL, 0, KEY_ALL_ACCESS,
                                                     NULL, &key, NULL));
            const DWORD flags = 0x400;
            RegSetValueExA(key, "DeviceDesc", 0, REG_SZ, reinterpret_cast<const BYTE *>(c.Description.c_str()),
                           static_cast<DWORD>(c.Description.size() + 1));
            RegSetValueExA(key, "Manufacturer", 0, REG_SZ, reinterpret_cast<const BYTE *>("ACME"), 5);
            RegSetValueExA(key, "ConfigFlags", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&flags), sizeof flags);
            RegCloseKey(key);
        }
        std::string before = CurrentDirectory();
        CDebugOutputCapture capture;
        entry(NULL, NULL, c.Text, 1);
        EXPECT_EQ(c.OpensInf, capture.Text().find("CPrinterInf::Open,failure") != std::string::npos) << c.Text;
        EXPECT_EQ(c.Directory ? c.Directory : before, CurrentDirectory()) << c.Text;
        CStoredValue flags = ReadStoredValue(HKEY_LOCAL_MACHINE, DeviceKey, "ConfigFlags");
        EXPECT_EQ(c.Device ? DWORD(REG_BINARY) : 0u, flags.Type) << c.Text;
        EXPECT_EQ(c.Device ? std::string(4, '\0') : "", flags.Data) << c.Text;
        EXPECT_EQ(c.Device, KeyExists(HKEY_LOCAL_MACHINE, DeviceKey)) << "a missing key is not created";
    }
    RegDeleteKeyA(HKEY_LOCAL_MACHINE, DeviceKey);
    FreeLibrary(module);
}

}  // namespace
