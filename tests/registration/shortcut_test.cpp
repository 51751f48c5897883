#include <gtest/gtest.h>

#include <windows.h>
#include <shlobj.h>

#include <string>

#include "entry/printer_inf.h"
#include "registration/shortcut.h"
#include "support/handles.h"
#include "test_support.h"

namespace {

const std::string Shortcuts = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Acme Laser\\Shortcuts";

// Runs the stage over a section "Group" of the given lines, with INF ids
// 70010 (where groups go) and 70011 (where targets are) in the scratch.
int AddProgramGroup(const std::string &scratch, const std::string &lines)
{
    DeleteKeyTree(HKEY_LOCAL_MACHINE, Shortcuts);
    CPrinterInf printer;
    LoadModelInf(printer, scratch + "group.inf", "[Group]\r\n" + lines);
    printer.ProgramGroupSections = CBoundedString("Group");
    printer.DirectoryIds[70010] = CBoundedString((scratch + "groups\\").c_str());
    printer.DirectoryIds[70011] = CBoundedString((scratch + "target\\").c_str());
    return printer.AddProgramGroup();
}

// Joined to a multithreaded apartment, the thread can't take the link's
// single-threaded one: the first line fails and nothing is on record. With
// the link's server missing the failure comes half-way, after CoInitialize,
// which must not stay in force: the thread can join a multithreaded apartment
// then. An empty section gives 0 as well.
TEST(AddProgramGroup, AnEmptySectionAnotherApartmentOrNoLinkServerGivesZero)
{
    const std::string scratch = ScratchDirectory(), line = "70010,,First,70011,,tool.exe\r\n";
    CreateDirectoryA((scratch + "groups").c_str(), NULL);
    EXPECT_EQ(0, AddProgramGroup(scratch, ""));
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(NULL, COINIT_MULTITHREADED)));
    int result = AddProgramGroup(scratch, line);
    CoUninitialize();
    EXPECT_EQ(0, result);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Shortcuts));

    CRegistryHandle server;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_CLASSES_ROOT,
                                           "CLSID\\{00021401-0000-0000-C000-000000000046}\\InprocServer32", 0,
                                           KEY_READ | KEY_WRITE, server.Put()));
    char module[MAX_PATH] = "";
    DWORD size = sizeof module;
    ASSERT_EQ(ERROR_SUCCESS, RegQueryValueExA(server.Get(), NULL, NULL, NULL, (BYTE *)module, &size));
    const char missing[] = "tovrel-missing.dll";
    RegSetValueExA(server.Get(), NULL, 0, REG_SZ, (const BYTE *)missing, sizeof missing);
    result = AddProgramGroup(scratch, line);
    HRESULT joined = CoInitializeEx(NULL, COINIT_MULTITHREADED);
    if (SUCCEEDED(joined))
        CoUninitialize();
    RegSetValueExA(server.Get(), NULL, 0, REG_SZ, (const BYTE *)module, size);
    EXPECT_EQ(0, result);
    EXPECT_EQ(S_OK, joined) << "left in the link's apartment";
    EXPECT_FALSE(PathExists(scratch + "groups\\First.lnk"));
}

}  // namespace
