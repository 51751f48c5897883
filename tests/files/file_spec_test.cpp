#include <gtest/gtest.h>

#include <shlobj.h>
#include <winspool.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "test_support.h"

namespace {

std::string Slash(const std::string &text) { return !text.empty() && text.back() == '\\' ? text : text + '\\'; }

// Each directory as the platform gives it when asked directly.
std::string Asked(std::function<void(char *)> ask)
{
    char buffer[MAX_PATH] = "";
    ask(buffer);
    return Slash(buffer);
}

std::function<std::string()> Shell(int csidl)
{
    return [csidl] {
        LPITEMIDLIST item = NULL;
        char buffer[MAX_PATH] = "";
        if (FAILED(SHGetSpecialFolderLocation(NULL, csidl, &item)) || !item)
            return std::string();
        BOOL ok = SHGetPathFromIDListA(item, buffer);
        CoTaskMemFree(item);
        return ok && buffer[0] ? Slash(buffer) : std::string();
    };
}

std::string Module() { return Asked([](char *b) { GetModuleFileNameA(NULL, b, MAX_PATH); }); }
std::string WindowsDir() { return Asked([](char *b) { GetWindowsDirectoryA(b, MAX_PATH); }); }
std::string SystemDir() { return Asked([](char *b) { GetSystemDirectoryA(b, MAX_PATH); }); }
std::string TempDir() { return Asked([](char *b) { GetTempPathA(MAX_PATH, b); }); }
std::string CurrentDir() { return Asked([](char *b) { GetCurrentDirectoryA(MAX_PATH, b); }); }
DWORD Needed;
std::string DriverDir(const char *env)
{
    return Asked([&](char *b) { GetPrinterDriverDirectoryA(NULL, (char *)env, 1, (BYTE *)b, MAX_PATH, &Needed); });
}
std::string ProcessorDir()
{
    return Asked([](char *b) { GetPrintProcessorDirectoryA(NULL, NULL, 1, (BYTE *)b, MAX_PATH, &Needed); });
}
std::string ColorDir()
{
    HMODULE mscms = LoadLibraryA("mscms.dll");
    typedef BOOL(WINAPI * Proc)(PCSTR, PSTR, PDWORD);
    Proc proc = mscms ? (Proc)(void *)GetProcAddress(mscms, "GetColorDirectoryA") : nullptr;
    char buffer[MAX_PATH] = "";
    DWORD size = MAX_PATH;
    BOOL ok = proc && proc(NULL, buffer, &size);
    if (mscms)
        FreeLibrary(mscms);
    return ok ? Slash(buffer) : SystemDir() + "Color\\";
}

const char VersionKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
const char SafeSites[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Internet Settings\\SafeSites";

// value's text from HKLM with its variables expanded; "" when missing, and
// a deleted value when data is null.
std::string Registry(const char *subkey, const char *value, const char *data = "", DWORD type = REG_SZ)
{
    HKEY key;
    char raw[MAX_PATH + 1] = "", expanded[MAX_PATH] = "";
    DWORD size = MAX_PATH;
    RegCreateKeyA(HKEY_LOCAL_MACHINE, subkey, &key);
    if (!data)
        RegDeleteValueA(key, value);
    else if (*data)
        RegSetValueExA(key, value, 0, type, (const BYTE *)data, std::strlen(data) + 1);
    RegQueryValueExA(key, value, NULL, NULL, (BYTE *)raw, &size);
    RegCloseKey(key);
    ExpandEnvironmentStringsA(raw, expanded, MAX_PATH);
    return expanded;
}

std::string WebDir()
{
    std::string web = Registry(SafeSites, "winweb");
    if (web.empty())
        return WindowsDir() + "Web\\";
    if (web.back() == '*')
        web.pop_back();
    return Slash(web);
}

// Identifier, the INF ids that lead to it, and what the platform says.
const struct {
    int Id;
    std::vector<int> InfIds;
    std::function<std::string()> Expected;
} IdCases[] = {
    {1, {}, [] { std::string m = Module(); return m.substr(0, m.size() - 1); }},
    {2, {1}, [] { std::string m = Module(); return m.substr(0, m.rfind('\\', m.size() - 2) + 1); }},
    {3, {10}, WindowsDir}, {4, {11, 66002}, SystemDir}, {5, {2}, TempDir},
    {6, {66650}, Shell(CSIDL_DESKTOP)}, {7, {66651}, Shell(CSIDL_COMMON_DESKTOPDIRECTORY)},
    {8, {66652}, Shell(CSIDL_DESKTOPDIRECTORY)}, {9, {66653}, Shell(CSIDL_FAVORITES)},
    {11, {66654}, Shell(CSIDL_APPDATA)}, {12, {66655}, Shell(CSIDL_INTERNET_CACHE)},
    {13, {66656}, Shell(CSIDL_COOKIES)}, {14, {20}, Shell(CSIDL_FONTS)}, {15, {66657}, Shell(CSIDL_HISTORY)},
    {16, {66658}, Shell(CSIDL_NETHOOD)}, {17, {66659}, Shell(CSIDL_PERSONAL)},
    {18, {66660}, Shell(CSIDL_PRINTHOOD)}, {19, {66661}, Shell(CSIDL_PROGRAMS)},
    {20, {66663}, Shell(CSIDL_RECENT)}, {21, {66664}, Shell(CSIDL_SENDTO)},
    {22, {66665}, Shell(CSIDL_STARTMENU)}, {23, {66666}, Shell(CSIDL_STARTUP)},
    {24, {66667}, Shell(CSIDL_ALTSTARTUP)}, {25, {66668}, Shell(CSIDL_COMMON_STARTUP)},
    {26, {66669}, Shell(CSIDL_COMMON_ALTSTARTUP)}, {27, {66670}, Shell(CSIDL_TEMPLATES)},
    {28, {52, 66000}, [] { return DriverDir(NULL); }}, {29, {66602}, [] { return DriverDir("Windows 4.0"); }},
    {30, {55, 66001}, ProcessorDir}, {31, {66603}, ProcessorDir},
    {32, {66671}, Shell(CSIDL_PROGRAM_FILES)}, {33, {15}, Shell(CSIDL_PRINTERS)},
    {34, {66662}, Shell(CSIDL_COMMON_PROGRAMS)}, {35, {23, 66003}, ColorDir}, {36, {}, CurrentDir},
    {37, {17}, [] { return Slash(Registry(VersionKey, "DevicePath")); }}, {38, {66600}, WebDir},
    {39, {66601, 66004}, [] { return WebDir() + "printers\\"; }},
    {40, {50}, [] { return WindowsDir() + "system\\"; }}, {42, {14}, Shell(CSIDL_CONTROLS)},
    {0, {}, [] { return std::string(); }}, {43, {}, [] { return std::string(); }},
};

// Also on win98, whose platform answers differ.
void ExpectIdentifiersAsThePlatformGivesThem()
{
    CPrinterInf inf;
    inf.DirectoryIds[12345] = CBoundedString("stale");
    EXPECT_EQ(1, inf.BuildDirectoryIds());
    size_t infIds = 0;
    for (const auto &c : IdCases) {
        CFileSpec spec;
        std::memset(&spec, 'X', sizeof spec);
        EXPECT_EQ(1, spec.Resolve(c.Id));
        std::string expected = c.Expected();
        EXPECT_EQ(expected, spec.FullPath()) << "identifier " << c.Id;
        EXPECT_EQ(c.Id == 1 ? expected.substr(expected.rfind('\\') + 1) : "", spec.FileName()) << c.Id;
        for (int infId : c.InfIds) {
            char out[MAX_PATH] = "";
            EXPECT_EQ(1, inf.FindDirectoryId(infId, out));
            EXPECT_EQ(expected, out) << "INF id " << infId;
            ++infIds;
        }
    }
    EXPECT_EQ(infIds, inf.DirectoryIds.size()) << "exactly the known ids, from an empty map";
    char out[MAX_PATH] = "untouched";
    for (int id : {0, 3, 51, 66005, 66672, -1})
        EXPECT_EQ(0, inf.FindDirectoryId(id, out)) << id;
    EXPECT_STREQ("untouched", out);
}

TEST(FileSpecResolve, IdentifiersMatchThePlatform) { ExpectIdentifiersAsThePlatformGivesThem(); }

TEST(FileSpecResolveWin98, IdentifiersMatchThePlatform) { ExpectIdentifiersAsThePlatformGivesThem(); }

TEST(FileSpecResolve, TempFilesAndDirectoriesAreNewEachTime)
{
    for (int id : {FileSpecTempFile, FileSpecTempDirectory}) {
        CFileSpec first, second;
        std::string a = first.ResolveFullPath(id), b = second.ResolveFullPath(id);
        EXPECT_NE(a, b) << id;
        EXPECT_EQ(TempDir(), a.substr(0, TempDir().size())) << id;
        EXPECT_EQ(id == FileSpecTempDirectory, IsDirectory(a.c_str()) == 1) << a;
        EXPECT_TRUE(PathExists(a) && PathExists(b)) << a;
        for (const std::string &path : {a, b})
            DeleteFileA(path.c_str()) || RemoveDirectoryA(path.c_str());
    }
}

TEST(FileSpecText, SetPathRepairsAppendDirectoryExtends)
{
    static const struct {
        const char *Path, *Sub, *Expected;  // Sub null: no AppendDirectory
    } cases[] = {
        {"sub/what?.txt", nullptr, "sub_what_.txt"},
        {"a<b>|\".x", nullptr, "a_b___.x"},
        {"C:\\base\\f.x", "\\sub", "C:\\base\\sub\\f.x"},
        {"C:\\base\\f.x", "Maker*Model:1", "C:\\base\\Maker_Model:1\\f.x"},
        {"C:\\base\\f.x", "", "C:\\base\\f.x"},
        {"C:f.x", "rel", "C:\\rel\\f.x"},
    };
    for (const auto &c : cases) {
        CFileSpec spec;
        spec.Resolve(0);
        spec.SetPath(c.Path);
        if (c.Sub)
            spec.AppendDirectory(c.Sub);
        EXPECT_STREQ(c.Expected, spec.FullPath()) << c.Path;
    }
    CFileSpec spec, same;
    spec.Resolve(0);
    spec.SetPath("C:\\drivers\\old.dll");
    spec.SetFileName("E:\\elsewhere\\new.name.drv");
    spec.SetDirectory("D:\\target\\ignored.txt");
    EXPECT_STREQ("D:\\target\\new.name.drv", spec.FullPath());
    same.Resolve(0);
    same.SetPath("d:\\TARGET\\New.Name.DRV");
    EXPECT_TRUE(spec == same);
}

// The web directory drops one trailing star; the type is not looked at:
// plain text is expanded too, a list is used unchanged. A value or an
// expansion past 259 characters is a failed read (the bare backslash); one
// whose closing backslash does not fit is refused.
TEST(FileSpecRegistry, WebDirectoryAndDevicePath)
{
    const std::string winweb = Registry(SafeSites, "winweb"), devicePath = Registry(VersionKey, "DevicePath");
    SetEnvironmentVariableA("TOVREL_LONG", std::string(200, 'v').c_str());
    const struct {
        const char *Key, *Value;
        std::string Data;  // empty: the value deleted
        DWORD Type;
        int Id;
        std::string Expected;
    } cases[] = {
        {SafeSites, "winweb", "C:\\web\\site**", REG_SZ, FileSpecWeb, "C:\\web\\site_\\"},  // one star goes
        {SafeSites, "winweb", "%SystemRoot%\\Webs\\*", REG_EXPAND_SZ, FileSpecWeb, WindowsDir() + "Webs\\"},
        {SafeSites, "winweb", "", REG_SZ, FileSpecWeb, WindowsDir() + "Web\\"},
        {VersionKey, "DevicePath", "%SystemRoot%\\inf;C:\\more", REG_SZ, FileSpecDevicePath, WindowsDir() + "inf;C:\\more\\"},
        {VersionKey, "DevicePath", std::string(300, 'p'), REG_SZ, FileSpecDevicePath, "\\"},
        {VersionKey, "DevicePath", "%TOVREL_LONG%\\%TOVREL_LONG%", REG_SZ, FileSpecDevicePath, "\\"},
        {VersionKey, "DevicePath", "C:\\" + std::string(57, 'p') + "%TOVREL_LONG%", REG_SZ, FileSpecDevicePath, "\\"},  // 260
        {VersionKey, "DevicePath", "C:\\" + std::string(56, 'p') + "%TOVREL_LONG%", REG_SZ, FileSpecDevicePath, ""},  // 259
        {VersionKey, "DevicePath", "", REG_SZ, FileSpecDevicePath, "\\"},
    };
    for (const auto &c : cases) {
        Registry(c.Key, c.Value, c.Data.empty() ? nullptr : c.Data.c_str(), c.Type);
        CFileSpec spec;
        EXPECT_EQ(c.Expected, spec.ResolveFullPath(c.Id)) << c.Data;
    }
    Registry(SafeSites, "winweb", winweb.empty() ? nullptr : winweb.c_str());
    Registry(VersionKey, "DevicePath", devicePath.empty() ? nullptr : devicePath.c_str(), REG_EXPAND_SZ);
}

}  // namespace
