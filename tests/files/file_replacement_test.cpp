#include <windows.h>

#include <gtest/gtest.h>

#include <list>
#include <string>

#include "entry/printer_inf.h"
#include "files/file_replacement.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const char UninstallRoot[] = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\";

std::string Versioned(const char *version)
{
    return BinaryDirectory() + "versioned_" + version + ".dll";
}

void SetWriteTime(const std::string &path, ULONGLONG ticks)
{
    HANDLE file = CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, file) << path;
    FILETIME time;
    time.dwLowDateTime = static_cast<DWORD>(ticks);
    time.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
    EXPECT_TRUE(SetFileTime(file, NULL, NULL, &time));
    CloseHandle(file);
}

const ULONGLONG Older = 130000000000000000ULL, Newer = 131000000000000000ULL;

// Runs the prefix's restart: pending renames and WININIT.INI are carried out.
void Restart()
{
    STARTUPINFOA startup;
    ZeroMemory(&startup, sizeof startup);
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process;
    char command[] = "wineboot.exe -r";
    ASSERT_TRUE(CreateProcessA(NULL, command, NULL, NULL, FALSE, 0, NULL, NULL, &startup, &process));
    WaitForSingleObject(process.hProcess, 60000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

class FileReplacement : public ::testing::Test {
protected:
    void SetUp() override
    {
        Dir = ScratchDirectory();
        const ::testing::TestInfo *info = ::testing::UnitTest::GetInstance()->current_test_info();
        Printer.Model = CBoundedString((std::string("Replace ") + info->name()).c_str());
        DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallRoot + std::string(Printer.Model.Text));
    }
    bool Recorded(const std::string &target)
    {
        std::string key = UninstallRoot + std::string(Printer.Model.Text) + "\\files";
        CStoredValue value = ReadStoredValue(HKEY_LOCAL_MACHINE, key, target.c_str());
        // Compared as text: the platform may store the NUL behind the marker.
        return value.Exists && value.Type == REG_SZ && std::string(value.Data.c_str()) == "1";
    }
    std::string Dir;
    CPrinterInf Printer;
};

TEST_F(FileReplacement, AMissingTargetIsCopiedAndAMissingDirectoryOnlyRecorded)
{
    std::string source = Dir + "source.txt", target = Dir + "target.txt", lost = Dir + "absent\\target.txt";
    WriteText(source, "new");
    EXPECT_EQ(1, Printer.InstallFile(source.c_str(), target.c_str()));
    EXPECT_EQ("new", ReadText(target));
    EXPECT_EQ(1, Printer.InstallFile(source.c_str(), lost.c_str()));
    EXPECT_FALSE(PathExists(Dir + "absent"));
    EXPECT_TRUE(Recorded(target));
    EXPECT_TRUE(Recorded(lost));
    EXPECT_FALSE(Printer.RebootRequired);
}

struct VersionCase {
    const char *Source, *Target;  // versions; null for a plain text file
    ULONGLONG SourceTime, TargetTime;
    bool Replaced;
};

const VersionCase VersionCases[] = {
    {"2_0_0_0", "1_9_9_9", Older, Newer, true},   // the version decides, not the time
    {"1_0_0_5", "1_0_0_9", Newer, Older, false},  // LS half decides when MS is equal
    {"1_0_0_9", "1_0_0_9", Newer, Older, false},  // equal versions: the target stays
    {"2_0_0_0", nullptr, Newer, Older, true},     // one version only: the time decides
    {"2_0_0_0", nullptr, Older, Newer, false},
    {nullptr, "1_0_0_5", Newer, Older, true},
    {nullptr, nullptr, Older, Older, false},      // no version, equal times
    {nullptr, nullptr, Newer, Older, true},
};

TEST_F(FileReplacement, NewerSourcesReplaceByVersionThenTime)
{
    int row = 0;
    for (const VersionCase &c : VersionCases) {
        std::string source = Dir + "source" + std::to_string(row) + ".bin";
        std::string target = Dir + "target" + std::to_string(row) + ".bin";
        if (c.Source)
            ASSERT_TRUE(CopyFileA(Versioned(c.Source).c_str(), source.c_str(), FALSE));
        else
            WriteText(source, "plain source");
        if (c.Target)
            ASSERT_TRUE(CopyFileA(Versioned(c.Target).c_str(), target.c_str(), FALSE));
        else
            WriteText(target, "plain target");
        SetWriteTime(source, c.SourceTime);
        SetWriteTime(target, c.TargetTime);
        std::string before = ReadText(target), incoming = ReadText(source);

        Printer.InstallFile(source.c_str(), target.c_str());
        EXPECT_EQ(c.Replaced ? incoming : before, ReadText(target)) << "row " << row;
        EXPECT_TRUE(Recorded(target)) << "row " << row;
        ++row;
    }
}

// A busy target is held the way a loaded library is: open for reading with
// read and delete sharing, so that it may be renamed but not overwritten.
struct BusyTarget {
    explicit BusyTarget(const std::string &path) : Module(LoadLibraryExA(path.c_str(), NULL, DONT_RESOLVE_DLL_REFERENCES)) {}
    ~BusyTarget() { Release(); }
    void Release()
    {
        if (Module)
            FreeLibrary(Module);
        Module = NULL;
    }
    bool Held() const { return Module != NULL; }
    HMODULE Module;
};

TEST_F(FileReplacement, ABusyTargetIsSwappedAtOnceOnWindowsNt)
{
    std::string source = Dir + "driver.dll", target = Dir + "busy.dll";
    ASSERT_TRUE(CopyFileA(Versioned("2_0_0_0").c_str(), source.c_str(), FALSE));
    ASSERT_TRUE(CopyFileA(Versioned("1_9_9_9").c_str(), target.c_str(), FALSE));
    std::string oldContent = ReadText(target), newContent = ReadText(source);
    BusyTarget busy(target);
    ASSERT_TRUE(busy.Held());
    ASSERT_FALSE(CopyFileA(source.c_str(), target.c_str(), FALSE)) << "the target must be busy";

    Printer.InstallFile(source.c_str(), target.c_str());
    EXPECT_EQ(newContent, ReadText(target));
    EXPECT_EQ(oldContent, ReadText(target + ".delete_on_reboot"));
    EXPECT_FALSE(PathExists(target + ".new_file"));
    EXPECT_FALSE(Printer.RebootRequired);
    EXPECT_TRUE(Recorded(target));
    EXPECT_NE(std::string::npos, ReadStoredValue(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Session Manager",
                                                 "PendingFileRenameOperations")
                                     .Data.find("busy.dll.delete_on_reboot"));

    busy.Release();
    Restart();
    EXPECT_FALSE(PathExists(target + ".delete_on_reboot"));
    EXPECT_EQ(newContent, ReadText(target));
}

TEST_F(FileReplacement, ABusyTargetWaitsForTheRestartOnWindows9xWin98)
{
    std::string source = Dir + "driver.dll", target = Dir + "busy.dll";
    ASSERT_TRUE(CopyFileA(Versioned("2_0_0_0").c_str(), source.c_str(), FALSE));
    ASSERT_TRUE(CopyFileA(Versioned("1_9_9_9").c_str(), target.c_str(), FALSE));
    std::string oldContent = ReadText(target), newContent = ReadText(source);
    char windows[MAX_PATH];
    GetWindowsDirectoryA(windows, MAX_PATH);
    std::string wininit = std::string(windows) + "\\WININIT.INI", entry = target + "=" + target + ".new_file";

    // Made when missing; else appended to, even when the same line is there.
    const std::string existing = std::string("NUL=C:\\old.tmp") + '\0' + "C:\\a.txt=C:\\b.txt" + '\0';
    for (bool before : {false, true}) {
        DeleteFileA(wininit.c_str());
        if (before)
            WriteText(wininit, "[rename]\r\nNUL=C:\\old.tmp\r\nC:\\a.txt=C:\\b.txt\r\n");
        {
            BusyTarget busy(target);
            ASSERT_TRUE(busy.Held());
            Printer.InstallFile(source.c_str(), target.c_str());
            EXPECT_TRUE(Printer.RebootRequired);
            EXPECT_EQ(oldContent, ReadText(target));
            EXPECT_EQ(newContent, ReadText(target + ".new_file"));
            EXPECT_TRUE(Recorded(target));
            if (before)
                Printer.InstallFile(source.c_str(), target.c_str());
        }
        char section[4096];
        std::string lines(section, GetPrivateProfileSectionA("RENAME", section, sizeof section, wininit.c_str()));
        EXPECT_EQ(before ? existing + entry + '\0' + entry : entry, lines.substr(0, lines.find_last_not_of('\0') + 1));
    }

    Restart();
    EXPECT_EQ(newContent, ReadText(target));
    EXPECT_FALSE(PathExists(target + ".new_file"));
}

// Two busy targets in one run, WININIT.INI held open by another handle the
// whole time as a 9x host may hold it, and targets long enough that each line
// passes 259 characters: after the restart both have the new content.
TEST_F(FileReplacement, TwoLongBusyTargetsWithWininitHeldOpenWin98)
{
    std::string source = Dir + "driver.dll", dir = Dir + std::string(120, 'l') + "\\";
    ASSERT_TRUE(CreateDirectoryA(dir.c_str(), NULL));
    ASSERT_TRUE(CopyFileA(Versioned("2_0_0_0").c_str(), source.c_str(), FALSE));
    char windows[MAX_PATH];
    GetWindowsDirectoryA(windows, MAX_PATH);
    std::string wininit = std::string(windows) + "\\WININIT.INI";
    DeleteFileA(wininit.c_str());
    HANDLE held = CreateFileA(wininit.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              NULL, OPEN_ALWAYS, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    const std::string targets[] = {dir + "first.dll", dir + "second.dll"};
    {
        std::list<BusyTarget> busy;
        for (const std::string &target : targets) {
            ASSERT_TRUE(CopyFileA(Versioned("1_9_9_9").c_str(), target.c_str(), FALSE));
            busy.emplace_back(target);
            ASSERT_TRUE(busy.back().Held());
            Printer.InstallFile(source.c_str(), target.c_str());
        }
    }
    CloseHandle(held);
    EXPECT_TRUE(Printer.RebootRequired);
    Restart();
    for (const std::string &target : targets) {
        EXPECT_EQ(ReadText(source), ReadText(target)) << target;
        EXPECT_FALSE(PathExists(target + ".new_file")) << target;
    }
}

}  // namespace
