#include <gtest/gtest.h>

#include <shlobj.h>
#include <winspool.h>

#include <cstring>
#include <functional>
#include <string>

#include "files/file_spec.h"
#include "test_support.h"

namespace {

std::string WithBackslash(std::string text)
{
    if (text.empty() || text.back() != '\\')
        text += '\\';
    return text;
}

// Each identifier as the platform gives it when asked directly.
std::string ModulePath()
{
    char buffer[MAX_PATH] = "";
    GetModuleFileNameA(NULL, buffer, MAX_PATH);
    return buffer;
}

std::string WindowsDir()
{
    char buffer[MAX_PATH] = "";
    GetWindowsDirectoryA(buffer, MAX_PATH);
    return WithBackslash(buffer);
}

std::string SystemDir()
{
    char buffer[MAX_PATH] = "";
    GetSystemDirectoryA(buffer, MAX_PATH);
    return WithBackslash(buffer);
}

std::string TempDir()
{
    char buffer[MAX_PATH] = "";
    GetTempPathA(MAX_PATH, buffer);
    return WithBackslash(buffer);
}

std::string ShellFolder(int csidl)
{
    LPITEMIDLIST item = NULL;
    char buffer[MAX_PATH] = "";
    if (FAILED(SHGetSpecialFolderLocation(NULL, csidl, &item)) || !item)
        return "";
    BOOL ok = SHGetPathFromIDListA(item, buffer);
    CoTaskMemFree(item);
    return ok && buffer[0] ? WithBackslash(buffer) : "";
}

std::string SpoolerDriverDir(const char *environment)
{
    char buffer[MAX_PATH] = "";
    DWORD needed = 0;
    GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), 1,
                               reinterpret_cast<BYTE *>(buffer), MAX_PATH, &needed);
    return WithBackslash(buffer);
}

std::string SpoolerProcessorDir()
{
    char buffer[MAX_PATH] = "";
    DWORD needed = 0;
    GetPrintProcessorDirectoryA(NULL, NULL, 1, reinterpret_cast<BYTE *>(buffer), MAX_PATH,
                                &needed);
    return WithBackslash(buffer);
}

std::string ColorDir()
{
    HMODULE mscms = LoadLibraryA("mscms.dll");
    typedef BOOL(WINAPI * Proc)(PCSTR, PSTR, PDWORD);
    Proc proc = mscms ? reinterpret_cast<Proc>(
                            reinterpret_cast<void *>(GetProcAddress(mscms, "GetColorDirectoryA")))
                      : nullptr;
    char buffer[MAX_PATH] = "";
    DWORD size = MAX_PATH;
    BOOL ok = proc && proc(NULL, buffer, &size);
    if (mscms)
        FreeLibrary(mscms);
    return ok ? WithBackslash(buffer) : SystemDir() + "Color\\";
}

std::string CurrentDir()
{
    char buffer[MAX_PATH] = "";
    GetCurrentDirectoryA(MAX_PATH, buffer);
    return WithBackslash(buffer);
}

std::string RegistryText(const char *subkey, const char *value)
{
    HKEY key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, subkey, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return "";
    char raw[MAX_PATH + 1] = "";
    DWORD size = MAX_PATH;
    LONG result = RegQueryValueExA(key, value, NULL, NULL, reinterpret_cast<BYTE *>(raw), &size);
    RegCloseKey(key);
    if (result != ERROR_SUCCESS)
        return "";
    char expanded[MAX_PATH] = "";
    ExpandEnvironmentStringsA(raw, expanded, MAX_PATH);
    return expanded;
}

const char *const VersionKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
const char *const SafeSites =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Internet Settings\\SafeSites";

std::string DevicePath() { return WithBackslash(RegistryText(VersionKey, "DevicePath")); }

std::string WebDir()
{
    std::string web = RegistryText(SafeSites, "winweb");
    if (web.empty())
        return WindowsDir() + "Web\\";
    if (web.back() == '*')
        web.pop_back();
    return WithBackslash(web);
}

struct PlatformCase {
    int Id;
    std::function<std::string()> Expected;
};

const PlatformCase PlatformCases[] = {
    {1, ModulePath},
    {2, [] { std::string m = ModulePath(); return m.substr(0, m.rfind('\\') + 1); }},
    {3, WindowsDir},
    {4, SystemDir},
    {5, TempDir},
    {6, [] { return ShellFolder(CSIDL_DESKTOP); }},
    {7, [] { return ShellFolder(CSIDL_COMMON_DESKTOPDIRECTORY); }},
    {8, [] { return ShellFolder(CSIDL_DESKTOPDIRECTORY); }},
    {9, [] { return ShellFolder(CSIDL_FAVORITES); }},
    {11, [] { return ShellFolder(CSIDL_APPDATA); }},
    {12, [] { return ShellFolder(CSIDL_INTERNET_CACHE); }},
    {13, [] { return ShellFolder(CSIDL_COOKIES); }},
    {14, [] { return ShellFolder(CSIDL_FONTS); }},
    {15, [] { return ShellFolder(CSIDL_HISTORY); }},
    {16, [] { return ShellFolder(CSIDL_NETHOOD); }},
    {17, [] { return ShellFolder(CSIDL_PERSONAL); }},
    {18, [] { return ShellFolder(CSIDL_PRINTHOOD); }},
    {19, [] { return ShellFolder(CSIDL_PROGRAMS); }},
    {20, [] { return ShellFolder(CSIDL_RECENT); }},
    {21, [] { return ShellFolder(CSIDL_SENDTO); }},
    {22, [] { return ShellFolder(CSIDL_STARTMENU); }},
    {23, [] { return ShellFolder(CSIDL_STARTUP); }},
    {24, [] { return ShellFolder(CSIDL_ALTSTARTUP); }},
    {25, [] { return ShellFolder(CSIDL_COMMON_STARTUP); }},
    {26, [] { return ShellFolder(CSIDL_COMMON_ALTSTARTUP); }},
    {27, [] { return ShellFolder(CSIDL_TEMPLATES); }},
    {28, [] { return SpoolerDriverDir(NULL); }},
    {29, [] { return SpoolerDriverDir("Windows 4.0"); }},
    {30, SpoolerProcessorDir},
    {31, SpoolerProcessorDir},
    {32, [] { return ShellFolder(CSIDL_PROGRAM_FILES); }},
    {33, [] { return ShellFolder(CSIDL_PRINTERS); }},
    {34, [] { return ShellFolder(CSIDL_COMMON_PROGRAMS); }},
    {35, ColorDir},
    {36, CurrentDir},
    {37, DevicePath},
    {38, WebDir},
    {39, [] { return WebDir() + "printers\\"; }},
    {40, [] { return WindowsDir() + "system\\"; }},
    {42, [] { return ShellFolder(CSIDL_CONTROLS); }},
};

void ExpectIdentifiersAsThePlatformGivesThem()
{
    for (const PlatformCase &c : PlatformCases) {
        CFileSpec spec;
        EXPECT_EQ(1, spec.Resolve(c.Id));
        std::string expected = c.Expected();
        EXPECT_STREQ(expected.c_str(), spec.FullPath()) << "identifier " << c.Id;
        if (c.Id != 1) {
            EXPECT_STREQ("", spec.Name) << "identifier " << c.Id;
            EXPECT_STREQ("", spec.Extension) << "identifier " << c.Id;
        }
    }
}

TEST(FileSpecResolve, IdentifiersMatchThePlatform) { ExpectIdentifiersAsThePlatformGivesThem(); }

TEST(FileSpecResolveWin98, IdentifiersMatchThePlatform)
{
    ExpectIdentifiersAsThePlatformGivesThem();
}

TEST(FileSpecResolve, OutOfRangeGivesTheEmptySpec)
{
    for (int id : {0, -1, 43, 66000}) {
        CFileSpec spec;
        std::memset(&spec, 'X', sizeof spec);
        EXPECT_EQ(1, spec.Resolve(id));
        EXPECT_STREQ("", spec.Drive);
        EXPECT_STREQ("", spec.Directory);
        EXPECT_STREQ("", spec.Name);
        EXPECT_STREQ("", spec.Extension);
        EXPECT_STREQ("", spec.FullPath()) << id;
    }
}

TEST(FileSpecResolve, TempFileIsNewAndEmpty)
{
    CFileSpec first, second;
    first.Resolve(FileSpecTempFile);
    second.Resolve(FileSpecTempFile);
    std::string a = first.FullPath(), b = second.FullPath();
    EXPECT_NE(a, b);
    EXPECT_EQ(TempDir(), std::string(first.DirectoryPath()));
    EXPECT_EQ(0, std::strncmp(first.Name, "~~", 2)) << first.Name;
    EXPECT_EQ(1, first.FileExists());
    EXPECT_EQ("", ReadText(a));
    DeleteFileA(a.c_str());
    DeleteFileA(b.c_str());
    EXPECT_EQ(0, first.FileExists());
}

TEST(FileSpecResolve, UniqueTempDirectoriesDiffer)
{
    CFileSpec first, second;
    std::string a = first.ResolveFullPath(FileSpecTempDirectory);
    std::string b = second.ResolveFullPath(FileSpecTempDirectory);
    EXPECT_NE(a, b);
    for (const std::string &dir : {a, b}) {
        EXPECT_EQ(TempDir(), dir.substr(0, TempDir().size())) << dir;
        EXPECT_EQ('\\', dir.back());
        EXPECT_EQ(1, IsDirectory(dir.c_str())) << dir;
        RemoveDirectoryA(dir.c_str());
    }
    EXPECT_EQ(0, first.DirectoryExists());
}

struct SetPathCase {
    const char *Path;
    const char *Drive, *Directory, *Name, *Extension;
};

TEST(FileSpecText, SetPathCutsAfterRepairing)
{
    static const SetPathCase cases[] = {
        {"C:\\a\\archive.tar.gz", "C:", "\\a\\", "archive.tar", ".gz"},
        {"sub/what?.txt", "", "", "sub_what_", ".txt"},
        {"\\\\server\\share\\dir\\f.cab", "", "\\\\server\\share\\dir\\", "f", ".cab"},
        {"D:\\only\\dir\\", "D:", "\\only\\dir\\", "", ""},
        {"a<b>|\".x", "", "", "a_b___", ".x"},
    };
    for (const SetPathCase &c : cases) {
        CFileSpec spec;
        spec.Resolve(0);
        spec.SetPath(c.Path);
        EXPECT_STREQ(c.Drive, spec.Drive) << c.Path;
        EXPECT_STREQ(c.Directory, spec.Directory) << c.Path;
        EXPECT_STREQ(c.Name, spec.Name) << c.Path;
        EXPECT_STREQ(c.Extension, spec.Extension) << c.Path;
    }
}

TEST(FileSpecText, PartialSettersKeepTheOtherHalf)
{
    CFileSpec spec;
    spec.Resolve(0);
    spec.SetPath("C:\\drivers\\old.dll");
    spec.SetFileName("E:\\elsewhere\\new.name.drv");
    EXPECT_STREQ("C:\\drivers\\new.name.drv", spec.FullPath());
    EXPECT_STREQ("new.name", spec.BaseName());
    EXPECT_STREQ("new.name.drv", spec.FileName());

    spec.SetDirectory("D:\\target\\ignored.txt");
    EXPECT_STREQ("D:\\target\\new.name.drv", spec.FullPath());
    EXPECT_STREQ("D:\\target\\", spec.DirectoryPath());
}

TEST(FileSpecText, AppendDirectory)
{
    static const struct {
        const char *Directory, *Sub, *Expected;
    } cases[] = {
        {"\\base", "\\sub", "C:\\base\\sub\\f.x"},
        {"\\base\\", "sub\\", "C:\\base\\sub\\f.x"},
        {"\\base\\", "Maker*Model:1", "C:\\base\\Maker_Model:1\\f.x"},
        {"\\base", "", "C:\\base\\f.x"},
        {"\\base", nullptr, "C:\\base\\f.x"},
        {"", "rel", "C:\\rel\\f.x"},
    };
    for (const auto &c : cases) {
        CFileSpec spec;
        spec.Resolve(0);
        spec.SetPath("C:f.x");
        std::strcpy(spec.Directory, c.Directory);
        spec.AppendDirectory(c.Sub);
        EXPECT_STREQ(c.Expected, spec.Composed) << c.Directory << " + " << (c.Sub ? c.Sub : "(null)");
        if (!c.Sub || !*c.Sub) {
            EXPECT_STREQ(c.Directory, spec.Directory) << "no part changes";
        }
    }
}

TEST(FileSpecText, EqualityIgnoresCaseOfTheFullPath)
{
    CFileSpec a, b;
    a.Resolve(0);
    b.Resolve(0);
    a.SetPath("C:\\Dir\\File.TXT");
    b.SetPath("c:\\dir\\file.txt");
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    b.SetFileName("other.txt");
    EXPECT_TRUE(a != b);
}

TEST(FileSpecFiles, ExistenceChecks)
{
    std::string dir = ScratchDirectory();
    WriteText(dir + "present.txt", "x");
    CFileSpec spec;
    spec.Resolve(0);
    spec.SetPath((dir + "present.txt").c_str());
    EXPECT_EQ(1, spec.FileExists());
    EXPECT_EQ(1, spec.DirectoryExists());
    spec.SetFileName("absent.txt");
    EXPECT_EQ(0, spec.FileExists());
    spec.SetPath(dir.c_str());
    EXPECT_EQ(0, spec.FileExists()) << "a directory is not a file";

    // An open that asks for no access passes the sharing check, so a busy
    // file still counts as present.
    HANDLE held = CreateFileA((dir + "present.txt").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                              NULL, OPEN_EXISTING, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    spec.SetPath((dir + "present.txt").c_str());
    EXPECT_EQ(1, spec.FileExists());
    CloseHandle(held);
}

TEST(FileSpecFiles, IsDirectoryPutsTheCurrentDirectoryBack)
{
    std::string dir = ScratchDirectory();
    WriteText(dir + "file.txt", "x");
    std::string before = CurrentDir();
    EXPECT_EQ(1, IsDirectory(dir.c_str()));
    EXPECT_EQ(0, IsDirectory((dir + "file.txt").c_str()));
    EXPECT_EQ(0, IsDirectory((dir + "missing").c_str()));
    EXPECT_EQ(before, CurrentDir());
}

// Sets or removes one HKLM value for the length of a test.
class CRegistryValueScope {
public:
    CRegistryValueScope(const char *subkey, const char *name) : Subkey(subkey), Name(name)
    {
        HKEY key;
        Existed = false;
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, subkey, 0, KEY_READ, &key) == ERROR_SUCCESS) {
            DWORD size = sizeof Saved;
            Existed = RegQueryValueExA(key, name, NULL, &Type, Saved, &size) == ERROR_SUCCESS;
            SavedSize = size;
            RegCloseKey(key);
        }
    }
    ~CRegistryValueScope()
    {
        if (Existed)
            Set(Type, Saved, SavedSize);
        else
            Remove();
    }
    void Set(DWORD type, const void *data, DWORD size)
    {
        HKEY key;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyA(HKEY_LOCAL_MACHINE, Subkey, &key));
        RegSetValueExA(key, Name, 0, type, static_cast<const BYTE *>(data), size);
        RegCloseKey(key);
    }
    void SetText(DWORD type, const char *text) { Set(type, text, std::strlen(text) + 1); }
    void Remove()
    {
        HKEY key;
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, Subkey, 0, KEY_ALL_ACCESS, &key) == ERROR_SUCCESS) {
            RegDeleteValueA(key, Name);
            RegCloseKey(key);
        }
    }

private:
    const char *Subkey, *Name;
    bool Existed;
    DWORD Type = REG_SZ, SavedSize = 0;
    BYTE Saved[1024];
};

TEST(FileSpecRegistry, WebDirectoryFromWinweb)
{
    CRegistryValueScope winweb(SafeSites, "winweb");
    char out[MAX_PATH];

    winweb.SetText(REG_SZ, "C:\\web\\site**");
    ASSERT_EQ(1, WebDirectory(out));
    EXPECT_STREQ("C:\\web\\site*\\", out) << "only one star goes";

    winweb.SetText(REG_EXPAND_SZ, "%SystemRoot%\\Webs\\*");
    ASSERT_EQ(1, WebDirectory(out));
    EXPECT_EQ(WindowsDir() + "Webs\\", std::string(out));

    winweb.Remove();
    ASSERT_EQ(1, WebDirectory(out));
    EXPECT_EQ(WindowsDir() + "Web\\", std::string(out));
    CFileSpec spec;
    EXPECT_EQ(WindowsDir() + "Web\\printers\\",
              std::string(spec.ResolveFullPath(FileSpecWebPrinters)));
    EXPECT_EQ(0, WebDirectory(nullptr));
}

TEST(FileSpecRegistry, MissingDevicePathLeavesOneBackslash)
{
    CRegistryValueScope devicePath(VersionKey, "DevicePath");
    devicePath.Remove();
    CFileSpec spec;
    spec.Resolve(FileSpecDevicePath);
    EXPECT_STREQ("", spec.Drive);
    EXPECT_STREQ("\\", spec.Directory);
    EXPECT_STREQ("\\", spec.FullPath());

    devicePath.SetText(REG_EXPAND_SZ, "%SystemRoot%\\inf;C:\\more");
    spec.Resolve(FileSpecDevicePath);
    EXPECT_EQ(WindowsDir() + "inf;C:\\more\\", std::string(spec.FullPath()))
        << "a list is used unchanged";
}

TEST(FileSpecRegistry, ReadExpandedRegistryStringExpands)
{
    CRegistryValueScope value(VersionKey, "TovrelTestValue");
    char out[MAX_PATH] = "untouched";
    EXPECT_EQ(0, ReadExpandedRegistryString(HKEY_LOCAL_MACHINE, VersionKey, "TovrelTestValue", out));
    EXPECT_STREQ("untouched", out);
    EXPECT_EQ(0, ReadExpandedRegistryString(HKEY_LOCAL_MACHINE, "SOFTWARE\\No\\Such\\Key",
                                            "DevicePath", out));
    EXPECT_STREQ("untouched", out);

    // The type is not looked at: plain text is expanded too.
    value.SetText(REG_SZ, "%WINDIR%\\x");
    EXPECT_EQ(1, ReadExpandedRegistryString(HKEY_LOCAL_MACHINE, VersionKey, "TovrelTestValue", out));
    EXPECT_EQ(WindowsDir() + "x", std::string(out));
}

TEST(FileSpecColor, ColorDirectoryMatchesTheColourSystem)
{
    char out[MAX_PATH] = "";
    ColorDirectory(out, MAX_PATH);
    EXPECT_EQ(ColorDir(), WithBackslash(out));
    EXPECT_EQ(1, IsDirectory(out)) << out;
}

}  // namespace
