#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

typedef void(WINAPI *RepairProc)(const char *, const char *, const char *, const char *, int *, const char *);

class TovrelDll : public ::testing::Test {
protected:
    void SetUp() override
    {
        Module = LoadLibraryA((BinaryDirectory() + "tovrel.dll").c_str());
        ASSERT_NE((HMODULE)NULL, Module);
    }
    void TearDown() override
    {
        if (Module)
            FreeLibrary(Module);
    }
    HMODULE Module = NULL;
};

TEST_F(TovrelDll, RepairIsExportedByName)
{
    RepairProc repair = reinterpret_cast<RepairProc>(reinterpret_cast<void *>(GetProcAddress(Module, "Repair")));
    ASSERT_NE(nullptr, repair);
    int reboot = 7;
    std::string missing = ScratchDirectory() + "missing.inf";
    repair(missing.c_str(), "Maker", "Model", "Printer", &reboot, "");
    EXPECT_EQ(7, reboot) << "a run that stops leaves the flag as the caller set it";
    repair(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

TEST_F(TovrelDll, CarriesItsStringTableInUsEnglish)
{
    struct {
        UINT Id;
        const char *Text;
    } const strings[] = {
        {100, "A system reboot is required to complete \nthe installation of your printer.\n\n"
              "(it won't work until you reboot)\n\nWould you like to reboot now?"},
        {101, "New Printer Wizard"},
        {102, "Unable to reboot the system.\nPlease restart this computer before using your printer.\n\n"
              "Extended Error Details...\n"},
    };
    for (const auto &s : strings) {
        char text[512] = {0};
        EXPECT_GT(LoadStringA(Module, s.Id, text, sizeof text), 0) << s.Id;
        EXPECT_STREQ(s.Text, text) << s.Id;
    }
    HRSRC block = FindResourceExA(Module, RT_STRING, MAKEINTRESOURCEA(100 / 16 + 1),
                                  MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
    EXPECT_NE((HRSRC)NULL, block) << "the strings are language 1033";
}

TEST_F(TovrelDll, CarriesAVersionResource)
{
    std::string path = BinaryDirectory() + "tovrel.dll";
    DWORD handle = 0;
    DWORD size = GetFileVersionInfoSizeA(path.c_str(), &handle);
    ASSERT_GT(size, 0u);
    std::vector<char> data(size);
    ASSERT_TRUE(GetFileVersionInfoA(path.c_str(), 0, size, data.data()));
    VS_FIXEDFILEINFO *info = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(data.data(), "\\", reinterpret_cast<void **>(&info), &length));
    EXPECT_EQ(MAKELONG(0, 6), info->dwFileVersionMS);
    char *name = nullptr;
    ASSERT_TRUE(VerQueryValueA(data.data(), "\\StringFileInfo\\040904b0\\OriginalFilename",
                               reinterpret_cast<void **>(&name), &length));
    EXPECT_STREQ("tovrel.dll", name);
}

}  // namespace
