#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/printer_inf.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string Marker = "Software\\Tovrel Tests\\Self Registration";
const std::string Unregister = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Acme Laser\\unregister";

std::string Lower(std::string text)
{
    CharLowerBuffA(&text[0], static_cast<DWORD>(text.size()));
    return text;
}

class RegisterFilesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Clean();
        Scratch = ScratchDirectory();
    }
    void TearDown() override { Clean(); }
    void Clean()
    {
        DeleteKeyTree(HKEY_CURRENT_USER, "Software\\Tovrel Tests");
        DeleteKeyTree(HKEY_LOCAL_MACHINE, "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data");
    }
    void Load(const std::string &registerFiles)
    {
        std::string path = Scratch + "selfreg.inf";
        WriteText(path, "[Version]\r\nClass=Printer\r\n[Install]\r\nRegisterFiles=" + registerFiles +
                            "\r\n[Strings]\r\nSecond=selfreg_b.dll\r\n");
        ASSERT_TRUE(Printer.Load(path.c_str()));
        Printer.Model = CBoundedString("Acme Laser");
        Printer.InstallSection = CBoundedString("Install");
    }
    // A copy of a fixture library under another name, in a directory of the scratch.
    std::string Place(const char *fixture, const std::string &directory, const char *name)
    {
        std::string folder = Scratch + directory + "\\";
        CreateDirectoryA(folder.c_str(), NULL);
        std::string target = folder + name;
        EXPECT_TRUE(CopyFileA((BinaryDirectory() + fixture).c_str(), target.c_str(), FALSE)) << target;
        return target;
    }
    // Where DllRegisterServer of that file ran from, empty if it didn't run.
    std::string RegisteredFrom(const char *name)
    {
        CStoredValue value = ReadStoredValue(HKEY_CURRENT_USER, Marker, name);
        return value.Exists ? Lower(value.Data.c_str()) : std::string();
    }
    std::string Order() { return ReadStoredValue(HKEY_CURRENT_USER, Marker, "Order").Data.c_str(); }
    std::string Recorded(const char *name)
    {
        CStoredValue value = ReadStoredValue(HKEY_LOCAL_MACHINE, Unregister, name);
        return value.Exists ? value.Data.c_str() : "(none)";
    }
    std::string Scratch;
    CPrinterInf Printer;
};

TEST_F(RegisterFilesTest, ListElementsAreRegisteredInOrderAndExecutablesSkipped)
{
    // The executable is really a library that would note itself if loaded.
    Place("selfreg_a.dll", "dest", "sneaky.EXE");
    Printer.DirectoryIds[70001] = CBoundedString((Scratch + "dest\\").c_str());
    Printer.DestinationDirs["Files"].push_back(CBoundedString("70001"));
    // A token inside the list is no token of the value; the failed search for
    // it ends in the destination directory, where the next element is then
    // looked for, and only there.
    Load(" selfreg_c.dll ,sneaky.EXE, selfreg_a.dll,%Second%,selfreg_b.dll,");
    EXPECT_EQ(0, Printer.RegisterFiles());

    EXPECT_EQ("selfreg_c.dll;selfreg_a.dll;", Order());
    EXPECT_EQ(Lower(BinaryDirectory() + "selfreg_c.dll"), RegisteredFrom("selfreg_c.dll"));
    EXPECT_EQ("", RegisteredFrom("sneaky.EXE"));
    EXPECT_EQ("", RegisteredFrom("selfreg_b.dll"));
    // Found by the system's own search: the record holds the bare name.
    EXPECT_EQ("selfreg_c.dll", Recorded("selfreg_c.dll"));
    EXPECT_EQ("selfreg_a.dll", Recorded("selfreg_a.dll"));
    EXPECT_EQ(2u, StoredValueNames(HKEY_LOCAL_MACHINE, Unregister).size());
}

TEST_F(RegisterFilesTest, TheWholeValueMayBeAToken)
{
    Load("%Second%");
    Printer.RegisterFiles();
    EXPECT_EQ("selfreg_b.dll;", Order());
    EXPECT_EQ("selfreg_b.dll", Recorded("selfreg_b.dll"));
}

TEST_F(RegisterFilesTest, DestinationDirectoriesAreSearchedAndTheLastOneCarriesOver)
{
    // Map order puts "A" (the second directory) ahead of "B" (the first).
    std::string onlyFirst = Place("selfreg_a.dll", "first", "onlyfirst.dll");
    std::string bothFirst = Place("selfreg_b.dll", "first", "both.dll");
    Place("selfreg_b.dll", "second", "both.dll");
    std::string twice = Place("selfreg_c.dll", "second", "twice.dll");
    Place("selfreg_c.dll", "first", "twice.dll");
    Printer.DirectoryIds[70001] = CBoundedString((Scratch + "first\\").c_str());
    Printer.DirectoryIds[70002] = CBoundedString((Scratch + "second\\").c_str());
    Printer.DestinationDirs["a"].push_back(CBoundedString("99999"));
    Printer.DestinationDirs["a"].push_back(CBoundedString("70002,sub"));
    Printer.DestinationDirs["B"].push_back(CBoundedString("70001"));
    Load("versioned_1_0_0_5.dll,twice.dll,onlyfirst.dll,both.dll,absent.dll");
    Printer.RegisterFiles();

    EXPECT_EQ(Lower(twice), RegisteredFrom("twice.dll")) << "the first directory of the walk wins";
    EXPECT_EQ(Lower(onlyFirst), RegisteredFrom("onlyfirst.dll"));
    EXPECT_EQ(Lower(bothFirst), RegisteredFrom("both.dll")) << "tried where the one before was found";
    EXPECT_EQ("twice.dll;onlyfirst.dll;both.dll;", Order());

    EXPECT_EQ(twice, Recorded("twice.dll"));
    EXPECT_EQ(onlyFirst, Recorded("onlyfirst.dll"));
    EXPECT_EQ(bothFirst, Recorded("both.dll"));
    EXPECT_EQ("(none)", Recorded("absent.dll")) << "nothing loaded, nothing recorded";
    // Loaded without the export: recorded all the same, by the bare name the
    // system's search found it under.
    EXPECT_EQ("versioned_1_0_0_5.dll", Recorded("versioned_1_0_0_5.dll"));
}

TEST_F(RegisterFilesTest, NoKeyNoWork)
{
    Load("selfreg_a.dll");
    Printer.InstallSection = CBoundedString("Elsewhere");
    EXPECT_EQ(0, Printer.RegisterFiles());
    EXPECT_EQ("", Order());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Unregister));
}

}  // namespace
