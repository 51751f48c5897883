#include <gtest/gtest.h>

#include <string>

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

// The fixture libraries note in the registry the order of their
// DllRegisterServer calls and, under their own name, where they ran from.
class RegisterFilesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        DeleteKeyTree(HKEY_CURRENT_USER, "Software\\Tovrel Tests");
        DeleteKeyTree(HKEY_LOCAL_MACHINE, Unregister);
    }
    int Run(const std::string &registerFiles) { return Run(Printer, registerFiles, "Install"); }
    int Run(CPrinterInf &printer, const std::string &registerFiles, const char *installSection)
    {
        LoadModelInf(printer, Scratch + "selfreg.inf",
                     "[Install]\r\nRegisterFiles=" + registerFiles + "\r\n[Strings]\r\nSecond=selfreg_b.dll\r\n");
        printer.InstallSection = CBoundedString(installSection);
        return printer.RegisterFiles();
    }
    // A copy of a fixture library under another name, in a directory of the scratch.
    std::string Place(const char *fixture, const std::string &directory, const char *name)
    {
        CreateDirectoryA((Scratch + directory).c_str(), NULL);
        std::string target = Scratch + directory + "\\" + name;
        EXPECT_TRUE(CopyFileA((BinaryDirectory() + fixture).c_str(), target.c_str(), FALSE)) << target;
        return target;
    }
    std::string RanFrom(const char *name)
    {
        return Lower(ReadStoredValue(HKEY_CURRENT_USER, Marker, name).Data.c_str());
    }
    std::string Order() { return ReadStoredValue(HKEY_CURRENT_USER, Marker, "Order").Data.c_str(); }
    std::string Recorded(const char *name)
    {
        return ReadStoredValue(HKEY_LOCAL_MACHINE, Unregister, name).Data.c_str();
    }
    std::string Scratch = ScratchDirectory();
    CPrinterInf Printer;
};

TEST_F(RegisterFilesTest, ListElementsAreRegisteredInOrderExecutablesSkippedAndAWholeValueToken)
{
    CPrinterInf elsewhere;
    EXPECT_EQ(0, Run(elsewhere, "selfreg_a.dll", "Elsewhere")) << "no key, no work";
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Unregister));
    // The executable is really a library that would note itself if loaded.
    Place("selfreg_a.dll", "dest", "sneaky.EXE");
    Printer.DirectoryIds[70001] = CBoundedString((Scratch + "dest\\").c_str());
    Printer.DestinationDirs["Files"].push_back(CBoundedString("70001"));
    // A token inside the list is no token of the value; the failed search for
    // it ends in the destination directory, where the next element is then
    // looked for, and only there.
    EXPECT_EQ(0, Run(" selfreg_c.dll ,sneaky.EXE, selfreg_a.dll,%Second%,selfreg_b.dll,"));
    EXPECT_EQ("selfreg_c.dll;selfreg_a.dll;", Order());
    EXPECT_EQ(Lower(BinaryDirectory() + "selfreg_c.dll"), RanFrom("selfreg_c.dll"));
    EXPECT_EQ("", RanFrom("sneaky.EXE"));
    // Found by the system's own search: the record holds the bare name.
    EXPECT_EQ("selfreg_c.dll", Recorded("selfreg_c.dll"));
    EXPECT_EQ("selfreg_a.dll", Recorded("selfreg_a.dll"));
    EXPECT_EQ(2u, StoredValueNames(HKEY_LOCAL_MACHINE, Unregister).size());
    DeleteKeyTree(HKEY_CURRENT_USER, "Software\\Tovrel Tests");
    CPrinterInf again;
    Run(again, "%Second%", "Install");
    EXPECT_EQ("selfreg_b.dll;", Order()) << "the whole value may be a token";
    EXPECT_EQ("selfreg_b.dll", Recorded("selfreg_b.dll"));
}

TEST_F(RegisterFilesTest, DestinationDirectoriesAreSearchedAndTheLastOneCarriesOver)
{
    // Map order puts "a" (the second directory) ahead of "B" (the first).
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
    Run("versioned_1_0_0_5.dll,twice.dll,onlyfirst.dll,both.dll,absent.dll");
    EXPECT_EQ("twice.dll;onlyfirst.dll;both.dll;", Order());
    const struct {
        const char *Name;
        std::string Path;
    } cases[] = {{"twice.dll", twice},  // the first directory of the walk wins
                 {"onlyfirst.dll", onlyFirst},
                 {"both.dll", bothFirst}};  // tried where the one before was found
    for (const auto &c : cases) {
        EXPECT_EQ(Lower(c.Path), RanFrom(c.Name)) << c.Name;
        EXPECT_EQ(c.Path, Recorded(c.Name)) << c.Name;
    }
    EXPECT_FALSE(ReadStoredValue(HKEY_LOCAL_MACHINE, Unregister, "absent.dll").Exists) << "nothing loaded";
    // Loaded without the export: recorded all the same, by the bare name the
    // system's search found it under.
    EXPECT_EQ("versioned_1_0_0_5.dll", Recorded("versioned_1_0_0_5.dll"));
}

}  // namespace
