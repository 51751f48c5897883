#include <gtest/gtest.h>

#include <shlobj.h>
#include <winspool.h>

#include <cstring>
#include <string>

#include "entry/printer_inf.h"
#include "files/file_spec.h"

namespace {

std::string Slash(std::string text)
{
    if (text.empty() || text.back() != '\\')
        text += '\\';
    return text;
}

std::string Found(CPrinterInf &inf, int id)
{
    char out[MAX_PATH] = "not found";
    EXPECT_EQ(1, inf.FindDirectoryId(id, out)) << id;
    return out;
}

TEST(DirectoryIds, HoldsExactlyTheKnownIds)
{
    static const int known[] = {1,     2,     10,    11,    14,    15,    17,    20,    23,
                                50,    52,    55,    66000, 66001, 66002, 66003, 66004, 66600,
                                66601, 66602, 66603};
    CPrinterInf inf;
    inf.DirectoryIds[12345] = CBoundedString("stale");
    EXPECT_EQ(1, inf.BuildDirectoryIds());
    EXPECT_EQ(43u, inf.DirectoryIds.size());
    for (int id : known)
        EXPECT_EQ(1u, inf.DirectoryIds.count(id)) << id;
    for (int id = 66650; id <= 66671; ++id)
        EXPECT_EQ(1u, inf.DirectoryIds.count(id)) << id;
    EXPECT_EQ(0u, inf.DirectoryIds.count(12345)) << "building starts from an empty map";
}

void ExpectIdsAsThePlatformGivesThem()
{
    CPrinterInf inf;
    inf.BuildDirectoryIds();

    char buffer[MAX_PATH];
    DWORD needed;
    GetWindowsDirectoryA(buffer, MAX_PATH);
    std::string windows = Slash(buffer);
    EXPECT_EQ(windows, Found(inf, 10));
    EXPECT_EQ(windows + "system\\", Found(inf, 50)) << "the literal folder, on NT too";

    GetSystemDirectoryA(buffer, MAX_PATH);
    EXPECT_EQ(Slash(buffer), Found(inf, 11));
    EXPECT_EQ(Slash(buffer), Found(inf, 66002));

    GetTempPathA(MAX_PATH, buffer);
    EXPECT_EQ(Slash(buffer), Found(inf, 2));

    GetModuleFileNameA(NULL, buffer, MAX_PATH);
    std::string module = buffer;
    EXPECT_EQ(module.substr(0, module.rfind('\\') + 1), Found(inf, 1));

    buffer[0] = 0;
    GetPrinterDriverDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(buffer), MAX_PATH, &needed);
    EXPECT_EQ(Slash(buffer), Found(inf, 52));
    EXPECT_EQ(Slash(buffer), Found(inf, 66000));

    buffer[0] = 0;
    GetPrinterDriverDirectoryA(NULL, const_cast<char *>("Windows 4.0"), 1,
                               reinterpret_cast<BYTE *>(buffer), MAX_PATH, &needed);
    EXPECT_EQ(Slash(buffer), Found(inf, 66602));

    buffer[0] = 0;
    GetPrintProcessorDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(buffer), MAX_PATH,
                                &needed);
    for (int id : {55, 66001, 66603})
        EXPECT_EQ(Slash(buffer), Found(inf, id)) << id;

    EXPECT_EQ(Found(inf, 66600) + "printers\\", Found(inf, 66601));
    EXPECT_EQ(Found(inf, 66601), Found(inf, 66004));
    EXPECT_EQ(Found(inf, 23), Found(inf, 66003));

    // Shell folders, including those that have no path on this platform:
    // those are present with empty text.
    static const struct {
        int InfId, Csidl;
    } folders[] = {
        {20, CSIDL_FONTS},          {15, CSIDL_PRINTERS},        {14, CSIDL_CONTROLS},
        {66650, CSIDL_DESKTOP},     {66659, CSIDL_PERSONAL},     {66661, CSIDL_PROGRAMS},
        {66662, CSIDL_COMMON_PROGRAMS}, {66667, CSIDL_ALTSTARTUP}, {66669, CSIDL_COMMON_ALTSTARTUP},
        {66671, CSIDL_PROGRAM_FILES},
    };
    for (const auto &folder : folders) {
        buffer[0] = 0;
        std::string expected;
        LPITEMIDLIST item = NULL;
        if (SUCCEEDED(SHGetSpecialFolderLocation(NULL, folder.Csidl, &item)) && item) {
            if (SHGetPathFromIDListA(item, buffer) && buffer[0])
                expected = Slash(buffer);
            CoTaskMemFree(item);
        }
        EXPECT_EQ(expected, Found(inf, folder.InfId)) << folder.InfId;
    }
}

TEST(DirectoryIds, MatchThePlatform) { ExpectIdsAsThePlatformGivesThem(); }

TEST(DirectoryIdsWin98, MatchThePlatform) { ExpectIdsAsThePlatformGivesThem(); }

TEST(DirectoryIds, UnknownIdLeavesTheBufferAlone)
{
    CPrinterInf inf;
    inf.BuildDirectoryIds();
    size_t size = inf.DirectoryIds.size();
    char out[MAX_PATH] = "untouched";
    for (int id : {0, 3, 51, 66005, 66672, -1}) {
        EXPECT_EQ(0, inf.FindDirectoryId(id, out)) << id;
        EXPECT_STREQ("untouched", out);
    }
    EXPECT_EQ(size, inf.DirectoryIds.size()) << "a lookup adds nothing";
}

}  // namespace
