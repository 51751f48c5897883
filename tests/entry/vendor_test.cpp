#include <gtest/gtest.h>

#include <string>

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
    RunDllProc entry =
        reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(GetProcAddress(module, "VendorInstaller")));
    ASSERT_NE(nullptr, entry);
    const std::string work = "C:\\tovrel vendor work", longModel = "Acme" + std::string(255, 'x');
    CreateDirectoryA(work.c_str(), NULL);
    WriteText(work + "\\long.inf", "[Version]\r\nClass=Printer\r\n[Manufacturer]\r\nAcme=Models\r\n"
                                   "[Models]\r\n%M%=Inst\r\n[Strings]\r\nM=" + longModel + "\r\n");
    const struct {
        bool Device;
        std::string Text, Directory;  // Directory empty: it stays
        std::string Description;
        bool OpensInf;
    } cases[] = {
        {true, std::string(DeviceKey) + " " + work, work, "ACME LASER 2000", false},
        {true, DeviceKey, "", "ACME LASER 2000", false},
        {false, std::string(DeviceKey) + " C:\\", "C:\\", "", false},
        {true, std::string(DeviceKey) + " " + work, work, longModel, true},
    };
    for (const auto &c : cases) {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, DeviceKey);
        HKEY key = NULL;
        const DWORD flags = 0x400;
        if (c.Device && RegCreateKeyA(HKEY_LOCAL_MACHINE, DeviceKey, &key) == ERROR_SUCCESS) {
            RegSetValueExA(key, "DeviceDesc", 0, REG_SZ, reinterpret_cast<const BYTE *>(c.Description.c_str()),
                           static_cast<DWORD>(c.Description.size() + 1));
            RegSetValueExA(key, "Manufacturer", 0, REG_SZ, reinterpret_cast<const BYTE *>("ACME"), 5);
            RegSetValueExA(key, "ConfigFlags", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&flags), sizeof flags);
            RegCloseKey(key);
        }
        const std::string before = CurrentDirectory();
        CDebugOutputCapture capture;
        entry(NULL, NULL, c.Text.c_str(), 1);
        EXPECT_EQ(c.OpensInf, capture.Text().find("CPrinterInf::Open,failure") != std::string::npos) << c.Text;
        EXPECT_EQ(c.Directory.empty() ? before : c.Directory, CurrentDirectory()) << c.Text;
        CStoredValue stored = ReadStoredValue(HKEY_LOCAL_MACHINE, DeviceKey, "ConfigFlags");
        EXPECT_EQ(c.Device ? DWORD(REG_BINARY) : 0u, stored.Type) << c.Text;
        EXPECT_EQ(c.Device ? std::string(4, '\0') : "", stored.Data) << c.Text;
        EXPECT_EQ(c.Device, KeyExists(HKEY_LOCAL_MACHINE, DeviceKey)) << "a missing key is not created";
    }
    DeleteKeyTree(HKEY_LOCAL_MACHINE, DeviceKey);
    FreeLibrary(module);
}

}  // namespace
