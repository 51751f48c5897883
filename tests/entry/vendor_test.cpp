#include <gtest/gtest.h>

#include <string>

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
// directory; ConfigFlags becomes four zero bytes whenever the key opened.
TEST(VendorInstaller, ClearsConfigFlagsAndMovesToTheWorkingDirectory)
{
    HMODULE module = LoadLibraryA((BinaryDirectory() + "tovrel.dll").c_str());
    ASSERT_NE((HMODULE)NULL, module);
    RunDllProc entry =
        reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(GetProcAddress(module, "VendorInstaller")));
    ASSERT_NE(nullptr, entry);
    CreateDirectoryA("C:\\tovrel vendor work", NULL);
    const struct {
        bool Device;
        const char *Text, *Directory;  // null: the directory stays
    } cases[] = {
        {true, "SYSTEM\\TovrelTestDevice C:\\tovrel vendor work", "C:\\tovrel vendor work"},
        {true, "SYSTEM\\TovrelTestDevice", nullptr},
        {false, "SYSTEM\\TovrelTestDevice C:\\", "C:\\"},
    };
    for (const auto &c : cases) {
        RegDeleteKeyA(HKEY_LOCAL_MACHINE, DeviceKey);
        if (c.Device) {
            HKEY key = NULL;
            ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExA(HKEY_LOCAL_MACHINE, DeviceKey, 0, NULL, 0, KEY_ALL_ACCESS,
                                                     NULL, &key, NULL));
            const DWORD flags = 0x400;
            RegSetValueExA(key, "DeviceDesc", 0, REG_SZ, reinterpret_cast<const BYTE *>("ACME LASER 2000"), 16);
            RegSetValueExA(key, "Manufacturer", 0, REG_SZ, reinterpret_cast<const BYTE *>("ACME"), 5);
            RegSetValueExA(key, "ConfigFlags", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&flags), sizeof flags);
            RegCloseKey(key);
        }
        std::string before = CurrentDirectory();
        entry(NULL, NULL, c.Text, 1);
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
