#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

typedef void(WINAPI *RepairProc)(const char *, const char *, const char *, const char *, int *, const char *);

TEST(TovrelDll, ExportsRepairByNameAndCarriesItsResources)
{
    std::string path = BinaryDirectory() + "tovrel.dll";
    HMODULE module = LoadLibraryA(path.c_str());
    ASSERT_NE((HMODULE)NULL, module);
    RepairProc repair = reinterpret_cast<RepairProc>(reinterpret_cast<void *>(GetProcAddress(module, "Repair")));
    ASSERT_NE(nullptr, repair);
    int reboot = 7;
    repair((ScratchDirectory() + "missing.inf").c_str(), "Maker", "Model", "Printer", &reboot, "");
    EXPECT_EQ(7, reboot) << "a run that stops leaves the flag as the caller set it";
    repair(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);

    const struct {
        UINT Id;
        const char *Text;
    } strings[] = {
        {100, "A system reboot is required to complete \nthe installation of your printer.\n\n"
              "(it won't work until you reboot)\n\nWould you like to reboot now?"},
        {101, "New Printer Wizard"},
        {102, "Unable to reboot the system.\nPlease restart this computer before using your printer.\n\n"
              "Extended Error Details...\n"},
    };
    for (const auto &s : strings) {
        char text[512] = {0};
        EXPECT_GT(LoadStringA(module, s.Id, text, sizeof text), 0) << s.Id;
        EXPECT_STREQ(s.Text, text) << s.Id;
    }
    EXPECT_NE((HRSRC)NULL, FindResourceExA(module, RT_STRING, MAKEINTRESOURCEA(100 / 16 + 1),
                                           MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)))
        << "the strings are language 1033";
    FreeLibrary(module);

    DWORD handle = 0, size = GetFileVersionInfoSizeA(path.c_str(), &handle);
    ASSERT_GT(size, 0u);
    std::vector<char> data(size);
    ASSERT_TRUE(GetFileVersionInfoA(path.c_str(), 0, size, data.data()));
    char *name = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(data.data(), "\\StringFileInfo\\040904b0\\OriginalFilename",
                               reinterpret_cast<void **>(&name), &length));
    EXPECT_STREQ("tovrel.dll", name);
}

}  // namespace
