#include <gtest/gtest.h>

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registration/shortcut.h"
#include "registry_support.h"
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
    IShellLinkA *shellLink = NULL;
    IPersistFile *persist = NULL;
    if (SUCCEEDED(CoCreateInstance(CLSID_ShellLink, NULL, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                   reinterpret_cast<void **>(&shellLink))) &&
        SUCCEEDED(shellLink->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&persist)))) {
        WCHAR wide[MAX_PATH];
        MultiByteToWideChar(CP_ACP, 0, file.c_str(), -1, wide, MAX_PATH);
        if (SUCCEEDED(persist->Load(wide, STGM_READ))) {
            link.Loaded = true;
            char text[MAX_PATH] = "";
            shellLink->GetPath(text, MAX_PATH, NULL, SLGP_RAWPATH);
            link.Path = text;
            text[0] = 0;
            shellLink->GetArguments(text, MAX_PATH);
            link.Arguments = text;
            text[0] = 0;
            shellLink->GetWorkingDirectory(text, MAX_PATH);
            link.WorkingDirectory = text;
            text[0] = 0;
            shellLink->GetDescription(text, MAX_PATH);
            link.Description = text;
            text[0] = 0;
            shellLink->GetIconLocation(text, MAX_PATH, &link.IconIndex);
            link.IconPath = text;
            // Wine 8 writes the show command into the file's header but
            // doesn't load it back: read it where the format puts it.
            std::string raw = ReadText(file);
            if (raw.size() >= 0x40)
                CopyMemory(&link.ShowCommand, raw.data() + 0x3C, sizeof link.ShowCommand);
            shellLink->GetHotkey(&link.HotKey);
        }
    }
    if (persist)
        persist->Release();
    if (shellLink)
        shellLink->Release();
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
        DeleteKeyTree(HKEY_LOCAL_MACHINE, "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data");
        Scratch = ScratchDirectory();
        for (const char *folder : {"groups", "target", "target\\bin", "target\\icons", "work"})
            CreateDirectoryA((Scratch + folder).c_str(), NULL);
        WriteText(Scratch + "target\\bin\\tool.exe", "MZ");
        WriteText(Scratch + "target\\tok.exe", "MZ");
    }
    void TearDown() override { DeleteTree(ProgramsFolder() + "Tovrel Group"); }
    void Load(const std::string &lines)
    {
        std::string path = Scratch + "group.inf";
        WriteText(path, "[Version]\r\nClass=Printer\r\n[Group]\r\n" + lines +
                            "[Strings]\r\nDesc=\"Token Desc\"\r\nTarget=tok.exe\r\nArgs=\"/token\"\r\n"
                            "Id=70010\r\n");
        ASSERT_TRUE(Printer.Load(path.c_str()));
        Printer.Model = CBoundedString("Acme Laser");
        Printer.ProgramGroupSections = CBoundedString("Group");
        Printer.DirectoryIds[70010] = CBoundedString((Scratch + "groups\\").c_str());
        Printer.DirectoryIds[70011] = CBoundedString((Scratch + "target\\").c_str());
        Printer.DirectoryIds[70012] = CBoundedString((Scratch + "work\\").c_str());
    }
    std::string Scratch;
    CPrinterInf Printer;
};

TEST_F(AddProgramGroupTest, EveryFieldReachesTheLink)
{
    Load("70010, My Group ,Acme Tool,70011,bin,tool.exe,/x /y,70012,sub,3,70011,icons,tool.ico,2,1601\r\n");
    EXPECT_EQ(1, Printer.AddProgramGroup());
    CLoadedLink link = LoadLink(Scratch + "groups\\My Group\\Acme Tool.lnk");
    ASSERT_TRUE(link.Loaded);
    EXPECT_EQ("Acme Tool", link.Description);
    EXPECT_STRCASEEQ((Scratch + "target\\bin\\tool.exe").c_str(), link.Path.c_str());
    EXPECT_EQ("/x /y", link.Arguments);
    EXPECT_EQ(Scratch + "work\\sub\\", link.WorkingDirectory);
    EXPECT_EQ(3, link.ShowCommand);
    EXPECT_EQ(Scratch + "target\\icons\\tool.ico", link.IconPath);
    EXPECT_EQ(2, link.IconIndex);
    EXPECT_EQ(1601, link.HotKey);
}

TEST_F(AddProgramGroupTest, TokensAreTextFieldsOnlyAndTheTargetDirectoryIsTheDefaultWorkingDirectory)
{
    // Field 9 is not read without field 8; field 14 without field 11 gives
    // no icon; the fifteenth field takes the rest of the line.
    Load("%Id%,,%Desc%,70011,,%Target%,%Args%,,ignored,,,icons,tool.ico,4,1602,extra,fields\r\n");
    EXPECT_EQ(1, Printer.AddProgramGroup());
    EXPECT_FALSE(PathExists(Scratch + "groups\\Token Desc.lnk")) << "the group root is no text field";
    CLoadedLink link = LoadLink(ProgramsFolder() + "Token Desc.lnk");
    DeleteFileA((ProgramsFolder() + "Token Desc.lnk").c_str());
    ASSERT_TRUE(link.Loaded);
    EXPECT_EQ("Token Desc", link.Description);
    EXPECT_STRCASEEQ((Scratch + "target\\tok.exe").c_str(), link.Path.c_str());
    EXPECT_EQ("/token", link.Arguments);
    EXPECT_EQ(Scratch + "target\\", link.WorkingDirectory);
    EXPECT_EQ("", link.IconPath);
    EXPECT_EQ(1602, link.HotKey);
}

TEST_F(AddProgramGroupTest, AShortLineLandsInThePrograms)
{
    Load(",Tovrel Group,Plain\r\n"
         "424242,Tovrel Group,Readme.txt\r\n"
         "70010,,Root Only,70011,bin,tool.exe\r\n"
         "70010,,Root Only,70011,,tok.exe\r\n");
    EXPECT_EQ(1, Printer.AddProgramGroup());

    CLoadedLink plain = LoadLink(ProgramsFolder() + "Tovrel Group\\Plain.lnk");
    ASSERT_TRUE(plain.Loaded);
    EXPECT_EQ("", plain.Path);
    EXPECT_EQ("", plain.WorkingDirectory);
    EXPECT_TRUE(LoadLink(ProgramsFolder() + "Tovrel Group\\Readme.txt.lnk").Loaded) << "an unknown root id";

    // The second line of one description overwrote the first.
    CLoadedLink root = LoadLink(Scratch + "groups\\Root Only.lnk");
    ASSERT_TRUE(root.Loaded);
    EXPECT_STRCASEEQ((Scratch + "target\\tok.exe").c_str(), root.Path.c_str());

    std::vector<std::string> recorded = StoredValueNames(HKEY_LOCAL_MACHINE, Shortcuts);
    EXPECT_EQ(4u, recorded.size());
    for (const char *line : {",Tovrel Group,Plain", "424242,Tovrel Group,Readme.txt",
                             "70010,,Root Only,70011,bin,tool.exe", "70010,,Root Only,70011,,tok.exe"})
        EXPECT_NE(recorded.end(), std::find(recorded.begin(), recorded.end(), line)) << line;
}

TEST_F(AddProgramGroupTest, OnlyTheLastLevelOfTheGroupIsMade)
{
    Load("70010,Missing\\Deeper,Lost,70011,bin,tool.exe\r\n"
         "70010,Made,Kept,70011,bin,tool.exe\r\n");
    EXPECT_EQ(1, Printer.AddProgramGroup());
    EXPECT_FALSE(PathExists(Scratch + "groups\\Missing"));
    EXPECT_TRUE(PathExists(Scratch + "groups\\Made\\Kept.lnk")) << "a failed save ends nothing";
    EXPECT_EQ(2u, StoredValueNames(HKEY_LOCAL_MACHINE, Shortcuts).size());
}

TEST_F(AddProgramGroupTest, NoSectionOrAnEmptyOneGivesZero)
{
    Load("");
    EXPECT_EQ(0, Printer.AddProgramGroup());
    Printer.ProgramGroupSections = CBoundedString();
    EXPECT_EQ(0, Printer.AddProgramGroup());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Shortcuts));
}

// Joined to a multithreaded apartment, the thread can't take the link's
// single-threaded one: the first line fails and nothing is on record.
TEST_F(AddProgramGroupTest, AThreadInAnotherApartmentEndsTheStage)
{
    Load("70010,,First,70011,bin,tool.exe\r\n");
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(NULL, COINIT_MULTITHREADED)));
    int result = Printer.AddProgramGroup();
    CoUninitialize();
    EXPECT_EQ(0, result);
    EXPECT_FALSE(PathExists(Scratch + "groups\\First.lnk"));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Shortcuts));
}

}  // namespace
