#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {

typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);

const char DeviceKey[] = "SYSTEM\\TovrelTestDevice";

class VendorInstaller : public ::testing::Test {
protected:
    void SetUp() override
    {
        Module = LoadLibraryA((BinaryDirectory() + "tovrel.dll").c_str());
        ASSERT_NE((HMODULE)NULL, Module);
        Entry = reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(GetProcAddress(Module, "VendorInstaller")));
        ASSERT_NE(nullptr, Entry);
        GetCurrentDirectoryA(sizeof Saved, Saved);
    }
    void TearDown() override
    {
        SetCurrentDirectoryA(Saved);
        RegDeleteKeyA(HKEY_LOCAL_MACHINE, DeviceKey);
        if (Module)
            FreeLibrary(Module);
    }
    void MakeDevice()
    {
        HKEY key = NULL;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExA(HKEY_LOCAL_MACHINE, DeviceKey, 0, NULL, 0, KEY_ALL_ACCESS, NULL,
                                                 &key, NULL));
        const char desc[] = "ACME LASER 2000";
        const char maker[] = "ACME";
        const DWORD flags = 0x400;
        RegSetValueExA(key, "DeviceDesc", 0, REG_SZ, reinterpret_cast<const BYTE *>(desc), sizeof desc);
        RegSetValueExA(key, "Manufacturer", 0, REG_SZ, reinterpret_cast<const BYTE *>(maker), sizeof maker);
        RegSetValueExA(key, "ConfigFlags", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&flags), sizeof flags);
        RegCloseKey(key);
    }
    // Type and bytes of ConfigFlags; type 0 when absent.
    std::pair<DWORD, std::string> ConfigFlags(const char *keyPath)
    {
        HKEY key = NULL;
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyPath, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
            return {0, ""};
        char data[16] = {0};
        DWORD size = sizeof data, type = 0;
        LONG result = RegQueryValueExA(key, "ConfigFlags", NULL, &type, reinterpret_cast<BYTE *>(data), &size);
        RegCloseKey(key);
        return result == ERROR_SUCCESS ? std::make_pair(type, std::string(data, size)) : std::make_pair(0ul, std::string());
    }
    std::string CurrentDirectory()
    {
        char dir[MAX_PATH] = {0};
        GetCurrentDirectoryA(sizeof dir, dir);
        return dir;
    }
    HMODULE Module = NULL;
    RunDllProc Entry = nullptr;
    char Saved[MAX_PATH] = {0};
};

TEST_F(VendorInstaller, ClearsConfigFlagsAndMovesToTheWorkingDirectory)
{
    MakeDevice();
    std::string work = "C:\\tovrel vendor work";
    CreateDirectoryA(work.c_str(), NULL);
    Entry(NULL, NULL, (std::string(DeviceKey) + " " + work).c_str(), 1);
    std::pair<DWORD, std::string> flags = ConfigFlags(DeviceKey);
    EXPECT_EQ(static_cast<DWORD>(REG_BINARY), flags.first);
    EXPECT_EQ(std::string(4, '\0'), flags.second);
    EXPECT_EQ(work, CurrentDirectory()) << "everything behind the first blank is the directory";
}

TEST_F(VendorInstaller, WithoutABlankTheDirectoryStays)
{
    MakeDevice();
    std::string before = CurrentDirectory();
    Entry(NULL, NULL, DeviceKey, 1);
    EXPECT_EQ(before, CurrentDirectory());
    EXPECT_EQ(static_cast<DWORD>(REG_BINARY), ConfigFlags(DeviceKey).first);
}

TEST_F(VendorInstaller, AMissingDeviceKeyIsNotCreated)
{
    Entry(NULL, NULL, "SYSTEM\\TovrelNoSuchDevice C:\\", 1);
    HKEY key = NULL;
    EXPECT_NE(ERROR_SUCCESS, RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SYSTEM\\TovrelNoSuchDevice", 0, KEY_READ, &key));
    EXPECT_EQ("C:\\", CurrentDirectory());
}

}  // namespace
