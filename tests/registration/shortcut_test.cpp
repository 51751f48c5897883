#include <gtest/gtest.h>

#include <windows.h>
#include <shlobj.h>

#include <string>

#include "entry/printer_inf.h"
#include "registration/shortcut.h"
#include "registry_support.h"
#include "support/handles.h"
#include "test_support.h"

namespace {

const std::string Shortcuts = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Acme Laser\\Shortcuts";

// A .lnk file as the shell reads it back.
struct CLoadedLink {
    bool Loaded = false;
    std::string Path, Arguments, WorkingDirectory, Description, IconPath;
    int ShowCommand = 0, IconIndex = -1;
    WORD HotKey = 0;
};

CLoadedLink LoadLink(const std::string &file)
{
    CLoadedLink link;
    CoInitialize(NULL);
    IShellLinkA *shell = NULL;
    IPersistFile *persist = NULL;
    WCHAR wide[MAX_PATH];
    MultiByteToWideChar(CP_ACP, 0, file.c_str(), -1, wide, MAX_PATH);
    if (SUCCEEDED(CoCreateInstance(CLSID_ShellLink, NULL, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                   reinterpret_cast<void **>(&shell))) &&
        SUCCEEDED(shell->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&persist))) &&
        SUCCEEDED(persist->Load(wide, STGM_READ))) {
        link.Loaded = true;
        char text[5][MAX_PATH] = {};
        shell->GetPath(text[0], MAX_PATH, NULL, SLGP_RAWPATH);
        shell->GetArguments(text[1], MAX_PATH);
        shell->GetWorkingDirectory(text[2], MAX_PATH);
        shell->GetDescription(text[3], MAX_PATH);
        shell->GetIconLocation(text[4], MAX_PATH, &link.IconIndex);
        shell->GetHotkey(&link.HotKey);
        link.Path = text[0], link.Arguments = text[1], link.WorkingDirectory = text[2];
        link.Description = text[3], link.IconPath = text[4];
        // Wine 8 writes the show command into the file's header but doesn't
        // load it back: read it where the format puts it.
        std::string raw = ReadText(file);
        if (raw.size() >= 0x40)
            CopyMemory(&link.ShowCommand, raw.data() + 0x3C, sizeof link.ShowCommand);
    }
    if (persist)
        persist->Release();
    if (shell)
        shell->Release();
    CoUninitialize();
    return link;
}

std::string ProgramsFolder()
{
    char path[MAX_PATH] = "";
    SHGetSpecialFolderPathA(NULL, path, CSIDL_PROGRAMS, FALSE);
    return std::string(path) + "\\";
}

class AddProgramGroupTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, Shortcuts);
        for (const char *folder : {"groups", "target", "target\\bin", "work"})
            CreateDirectoryA((Scratch + folder).c_str(), NULL);
        WriteText(Scratch + "target\\bin\\tool.exe", "MZ");
        WriteText(Scratch + "target\\tok.exe", "MZ");
    }
    int Run(const std::string &lines) { return Run(Printer, lines); }
    int Run(CPrinterInf &printer, const std::string &lines)
    {
        LoadModelInf(printer, Scratch + "group.inf",
                     "[Group]\r\n" + lines +
                         "[Strings]\r\nDesc=\"Token Desc\"\r\nTarget=tok.exe\r\nArgs=\"/token\"\r\nId=70010\r\n");
        printer.ProgramGroupSections = CBoundedString("Group");
        printer.DirectoryIds[70010] = CBoundedString((Scratch + "groups\\").c_str());
        printer.DirectoryIds[70011] = CBoundedString((Scratch + "target\\").c_str());
        printer.DirectoryIds[70012] = CBoundedString((Scratch + "work\\").c_str());
        return printer.AddProgramGroup();
    }
    std::string Scratch = ScratchDirectory();
    CPrinterInf Printer;
};

// In the second line, field 9 is not read without field 8, field 14 without
// field 11 gives no icon, and the fifteenth field takes the rest of the line;
// the target directory is the default working directory, and tokens are
// expanded in the text fields only, so "%Id%" is an unknown root.
TEST_F(AddProgramGroupTest, EveryFieldReachesTheLinkAndTokensOnlyTheTextFields)
{
    const struct {
        const char *Line;
        std::string File, Description, Path, Arguments, WorkingDirectory, IconPath;
        int ShowCommand, IconIndex;
        WORD HotKey;
    } cases[] = {
        {"70010, My Group ,Acme Tool,70011,bin,tool.exe,/x /y,70012,sub,3,70011,icons,tool.ico,2,1601",
         Scratch + "groups\\My Group\\Acme Tool.lnk", "Acme Tool", Scratch + "target\\bin\\tool.exe", "/x /y",
         Scratch + "work\\sub\\", Scratch + "target\\icons\\tool.ico", 3, 2, 1601},
        {"%Id%,,%Desc%,70011,,%Target%,%Args%,,ignored,,,icons,tool.ico,4,1602,extra,fields",
         ProgramsFolder() + "Token Desc.lnk", "Token Desc", Scratch + "target\\tok.exe", "/token",
         Scratch + "target\\", "", SW_SHOWNORMAL, 0, 1602},
    };
    for (const auto &c : cases) {
        CPrinterInf printer;
        EXPECT_EQ(1, Run(printer, std::string(c.Line) + "\r\n"));
        CLoadedLink link = LoadLink(c.File);
        DeleteFileA(c.File.c_str());
        ASSERT_TRUE(link.Loaded) << c.File;
        EXPECT_EQ(c.Description, link.Description);
        EXPECT_STRCASEEQ(c.Path.c_str(), link.Path.c_str());
        EXPECT_EQ(c.Arguments, link.Arguments);
        EXPECT_EQ(c.WorkingDirectory, link.WorkingDirectory);
        EXPECT_EQ(c.ShowCommand, link.ShowCommand);
        EXPECT_EQ(c.IconPath, link.IconPath);
        EXPECT_EQ(c.IconIndex, link.IconIndex);
        EXPECT_EQ(c.HotKey, link.HotKey);
    }
    EXPECT_FALSE(PathExists(Scratch + "groups\\Token Desc.lnk")) << "the group root is no text field";
}

TEST_F(AddProgramGroupTest, ShortLinesUnknownRootsAndMissingGroupLevels)
{
    const char *lines[] = {",Tovrel Group,Plain",
                           "424242,Tovrel Group,Readme.txt",
                           "70010,,Root Only,70011,bin,tool.exe",
                           "70010,,Root Only,70011,,tok.exe",
                           "70010,Missing\\Deeper,Lost,70011,bin,tool.exe",
                           "70010,Made,Kept,70011,bin,tool.exe",
                           "70010,,,70011,bin,tool.exe",
                           "70010,, ,70011,,tok.exe"};
    std::string text;
    for (const char *line : lines)
        text += std::string(line) + "\r\n";
    EXPECT_EQ(1, Run(text));
    CLoadedLink plain = LoadLink(ProgramsFolder() + "Tovrel Group\\Plain.lnk");
    EXPECT_TRUE(plain.Loaded) << "no root lands in the programs";
    EXPECT_EQ("", plain.Path);
    EXPECT_EQ("", plain.WorkingDirectory);
    EXPECT_TRUE(LoadLink(ProgramsFolder() + "Tovrel Group\\Readme.txt.lnk").Loaded) << "as does an unknown one";
    DeleteTree(ProgramsFolder() + "Tovrel Group");
    EXPECT_STRCASEEQ((Scratch + "target\\tok.exe").c_str(), LoadLink(Scratch + "groups\\Root Only.lnk").Path.c_str())
        << "the second line of one description overwrites the first";
    // Only the last level of a group is made; a failed save ends nothing.
    EXPECT_FALSE(PathExists(Scratch + "groups\\Missing"));
    EXPECT_TRUE(PathExists(Scratch + "groups\\Made\\Kept.lnk"));
    EXPECT_FALSE(PathExists(Scratch + "groups\\.lnk")) << "no description, no shortcut";
    for (const char *line : lines)
        EXPECT_TRUE(ReadStoredValue(HKEY_LOCAL_MACHINE, Shortcuts, line).Exists) << line;
}

// Joined to a multithreaded apartment, the thread can't take the link's
// single-threaded one: the first line fails and nothing is on record. With
// the link's server missing the failure comes after CoInitialize, which
// must not stay in force: the thread can join a multithreaded apartment then.
TEST_F(AddProgramGroupTest, AnEmptySectionAThreadInAnotherApartmentOrNoLinkServerGivesZero)
{
    EXPECT_EQ(0, Run(""));
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(NULL, COINIT_MULTITHREADED)));
    CPrinterInf other;
    int result = Run(other, "70010,,First,70011,bin,tool.exe\r\n");
    CoUninitialize();
    EXPECT_EQ(0, result);
    EXPECT_FALSE(PathExists(Scratch + "groups\\First.lnk"));
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
    CPrinterInf noServer;
    result = Run(noServer, "70010,,First,70011,bin,tool.exe\r\n");
    HRESULT joined = CoInitializeEx(NULL, COINIT_MULTITHREADED);
    if (SUCCEEDED(joined))
        CoUninitialize();
    RegSetValueExA(server.Get(), NULL, 0, REG_SZ, (const BYTE *)module, size);
    EXPECT_EQ(0, result);
    EXPECT_EQ(S_OK, joined) << "left in the link's apartment";
    EXPECT_FALSE(PathExists(Scratch + "groups\\First.lnk"));
}

}  // namespace
