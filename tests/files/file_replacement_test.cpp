#include <windows.h>

#include <gtest/gtest.h>

#include <list>
#include <string>

#include "entry/printer_inf.h"
#include "files/file_replacement.h"
#include "support/handles.h"
#include "test_support.h"

namespace {

std::string Versioned(const char *version)
{
    return BinaryDirectory() + "versioned_" + version + ".dll";
}

// A source or target: a copy of the versioned library, or plain text without a version.
void Place(const char *version, const std::string &path, ULONGLONG writeTime)
{
    if (version)
        ASSERT_TRUE(CopyFileA(Versioned(version).c_str(), path.c_str(), FALSE));
    else
        WriteText(path, "plain " + path);
    HANDLE file = CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
    FILETIME time = {static_cast<DWORD>(writeTime), static_cast<DWORD>(writeTime >> 32)};
    EXPECT_TRUE(SetFileTime(file, NULL, NULL, &time));
    CloseHandle(file);
}

const ULONGLONG Older = 130000000000000000ULL, Newer = 131000000000000000ULL;

TEST(FileReplacement, NewerSourcesReplaceByVersionThenTime)
{
    const struct {
        const char *Source, *Target;  // versions; null for a plain text file
        ULONGLONG SourceTime, TargetTime;
        bool Replaced;
    } cases[] = {
        {"2_0_0_0", "1_9_9_9", Older, Newer, true},   // the version decides, not the time
        {"1_0_0_5", "1_0_0_9", Newer, Older, false},  // LS half decides when MS is equal
        {"1_0_0_9", "1_0_0_9", Newer, Older, false},  // equal versions: the target stays
        {"2_0_0_0", nullptr, Newer, Older, true},     // one version only: the time decides
        {"2_0_0_0", nullptr, Older, Newer, false},
        {nullptr, "1_0_0_5", Newer, Older, true},
        {nullptr, nullptr, Older, Older, false},      // no version, equal times
        {nullptr, nullptr, Newer, Older, true},
    };
    const std::string dir = ScratchDirectory();
    CPrinterInf printer;
    printer.Model = CBoundedString("Replace By Version");
    int row = 0;
    for (const auto &c : cases) {
        std::string source = dir + "source" + std::to_string(row) + ".bin";
        std::string target = dir + "target" + std::to_string(row) + ".bin";
        Place(c.Source, source, c.SourceTime);
        Place(c.Target, target, c.TargetTime);
        std::string before = ReadText(target), incoming = ReadText(source);
        printer.InstallFile(source.c_str(), target.c_str());
        EXPECT_EQ(c.Replaced ? incoming : before, ReadText(target)) << "row " << row++;
    }
}

// Before a target is decided, what killed runs left beside it goes: the
// install's temporary names, and a ".new_file" that no rename waiting for the
// restart names. One that such a rename names, on either side and in either
// list, stays for the restart to take.
TEST(FileReplacement, LeftoversGoCopiesWaitingForTheRestartStay)
{
    const std::string dir = ScratchDirectory(), source = dir + "older.src";
    static const struct {
        const char *Name;
        bool Stays;
    } cases[] = {
        {"a.dll.new_file", false},
        {"b.dll.new_file", true},  // a delayed move's source
        {"c.dll.new_file", true},  // its target, marked for replacing
        {"d.dll.new_file", true},  // a WININIT.INI line's source
        {"~tvr0123456789abcdef.tmp", false},
        {"~tvr0123.tmp", true},  // not of the install's shape
        {"~tvr0123456789abcdeg.tmp", true},
    };
    // Pairs of source and target, a deletion's target empty; the list goes on past it.
    const std::string nt = "\\??\\" + dir, end(1, '\0');
    const std::string moves = nt + "gone" + end + end + nt + "b.dll.new_file" + end + nt + "b.dll" + end + nt + "x" +
                              end + "!" + nt + "c.dll.new_file" + end + end;
    CRegistryHandle manager;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Session Manager", 0,
                                           KEY_SET_VALUE, manager.Put()));
    ASSERT_EQ(ERROR_SUCCESS, RegSetValueExA(manager.Get(), "PendingFileRenameOperations", 0, REG_MULTI_SZ,
                                            reinterpret_cast<const BYTE *>(moves.data()), moves.size()));
    char wininit[MAX_PATH];
    GetWindowsDirectoryA(wininit, MAX_PATH);
    lstrcatA(wininit, "\\WININIT.INI");
    WritePrivateProfileStringA("RENAME", (dir + "d.dll").c_str(), (dir + "d.dll.new_file").c_str(), wininit);
    Place(nullptr, source, Older);
    for (const auto &c : cases)
        WriteText(dir + c.Name, "left");
    CPrinterInf printer;
    for (const char *target : {"a.dll", "b.dll", "c.dll", "d.dll"}) {
        Place(nullptr, dir + target, Newer);
        printer.InstallFile(source.c_str(), (dir + target).c_str());
    }
    for (const auto &c : cases)
        EXPECT_EQ(c.Stays, PathExists(dir + c.Name)) << c.Name;
    RegDeleteValueA(manager.Get(), "PendingFileRenameOperations");
    DeleteFileA(wininit);
}

// A busy target is held the way a loaded library is: it may be renamed but
// not overwritten.
struct CBusyTarget {
    explicit CBusyTarget(const std::string &path) : Module(LoadLibraryExA(path.c_str(), NULL, DONT_RESOLVE_DLL_REFERENCES)) {}
    ~CBusyTarget() { FreeLibrary(Module); }
    HMODULE Module;
};

// Two busy targets in one run, WININIT.INI held open by another handle the
// whole time as a 9x host may hold it, and targets long enough that each line
// passes 259 characters: after the restart both have the new content.
TEST(FileReplacement, TwoLongBusyTargetsWithWininitHeldOpenWin98)
{
    const std::string scratch = ScratchDirectory(), source = scratch + "driver.dll";
    const std::string dir = scratch + std::string(120, 'l') + "\\";
    ASSERT_TRUE(CreateDirectoryA(dir.c_str(), NULL));
    ASSERT_TRUE(CopyFileA(Versioned("2_0_0_0").c_str(), source.c_str(), FALSE));
    char windows[MAX_PATH];
    GetWindowsDirectoryA(windows, MAX_PATH);
    const std::string wininit = std::string(windows) + "\\WININIT.INI";
    DeleteFileA(wininit.c_str());
    HANDLE held = CreateFileA(wininit.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              NULL, OPEN_ALWAYS, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    const std::string targets[] = {dir + "first.dll", dir + "second.dll"};
    CPrinterInf printer;
    printer.Model = CBoundedString("Replace Busy");
    {
        std::list<CBusyTarget> busy;
        for (const std::string &target : targets) {
            ASSERT_TRUE(CopyFileA(Versioned("1_9_9_9").c_str(), target.c_str(), FALSE));
            busy.emplace_back(target);
            ASSERT_NE((HMODULE)NULL, busy.back().Module);
            printer.InstallFile(source.c_str(), target.c_str());
        }
    }
    CloseHandle(held);
    EXPECT_TRUE(printer.RebootRequired);
    RunProcess("wineboot.exe -r");  // the prefix's restart carries out WININIT.INI
    for (const std::string &target : targets) {
        EXPECT_EQ(ReadText(source), ReadText(target)) << target;
        EXPECT_FALSE(PathExists(target + ".new_file")) << target;
    }
}

}  // namespace
