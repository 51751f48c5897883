#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <string>

#include "files/file_spec.h"
#include "test_support.h"

namespace {

std::string Slash(const std::string &text) { return !text.empty() && text.back() == '\\' ? text : text + '\\'; }

std::string TempDir()
{
    char buffer[MAX_PATH] = "";
    GetTempPathA(MAX_PATH, buffer);
    return buffer;
}
std::string WindowsDir()
{
    char buffer[MAX_PATH] = "";
    GetWindowsDirectoryA(buffer, MAX_PATH);
    return Slash(buffer);
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

// The identifiers that no INF names: where an INF's ids lead shows in the
// snapshots of whole installs.
TEST(FileSpecResolve, TheModuleTheCurrentDirectoryAndNothing)
{
    char module[MAX_PATH] = "", current[MAX_PATH] = "";
    GetModuleFileNameA(NULL, module, MAX_PATH);
    GetCurrentDirectoryA(MAX_PATH, current);
    const std::string file = module;
    const struct {
        int Id;
        std::string Path, Name;
    } cases[] = {
        {FileSpecModulePath, file, file.substr(file.rfind('\\') + 1)},
        {FileSpecCurrent, Slash(current), ""},
        {FileSpecEmpty, "", ""},
        {FileSpecLast + 1, "", ""},
    };
    for (const auto &c : cases) {
        CFileSpec spec;
        std::memset(&spec, 'X', sizeof spec);
        EXPECT_EQ(1, spec.Resolve(c.Id));
        EXPECT_EQ(c.Path, spec.FullPath()) << c.Id;
        EXPECT_EQ(c.Name, spec.FileName()) << c.Id;
    }
}

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
