#include <windows.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "cabinet_maker.h"
#include "entry/printer_inf.h"
#include "files/copy_engine.h"
#include "files/file_spec.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string UninstallRoot = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\";

std::string Windows()
{
    char path[MAX_PATH];
    GetWindowsDirectoryA(path, MAX_PATH);
    return std::string(path) + "\\";
}

std::string DriverDirectory()
{
    CFileSpec spec;
    spec.Resolve(28);
    return spec.DirectoryPath();
}

std::set<std::string> TempEntries()
{
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    std::set<std::string> names;
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((std::string(temp) + "*").c_str(), &found);
    if (find != INVALID_HANDLE_VALUE) {
        do
            names.insert(found.cFileName);
        while (FindNextFileA(find, &found));
        FindClose(find);
    }
    return names;
}

// An INF whose model "Copier" has the given install-section lines and
// destination lines; every test has a model name of its own.
std::string MakeInf(const std::string &install, const std::string &destinations, const std::string &extra = "")
{
    return "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
           "[Manufacturer]\r\nAcme=AcmeDevices\r\n"
           "[AcmeDevices]\r\nCopier=Inst\r\n"
           "[Inst]\r\nDataSection=Data\r\n" +
           install +
           "[Data]\r\nDriverFile=drv.dll\r\nDataFile=drv.dat\r\nConfigFile=cfg.dll\r\nHelpFile=drv.hlp\r\n"
           "[DestinationDirs]\r\n" +
           destinations + extra;
}

class CopyEngine : public ::testing::Test {
protected:
    void SetUp() override { Dir = ScratchDirectory(); }

    // Opens the INF and reads the model, as Install does before the stages.
    void OpenModel(CPrinterInf &printer, const std::string &inf)
    {
        std::string path = Dir + "copy.inf";
        WriteText(path, inf);
        ASSERT_EQ(1, printer.Open(path.c_str()));
        ASSERT_EQ(1, printer.ReadDeviceSection("Acme", "Copier", "Printer"));
        DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallRoot + "Copier");
    }

    std::string PutCabinet(const std::string &name, const std::vector<CStoredFile> &files)
    {
        std::string path = DriverDirectory() + name;
        EXPECT_TRUE(WriteStoredCabinet(path, files)) << path;
        Cabinets.push_back(path);
        return path;
    }

    void TearDown() override
    {
        for (const std::string &path : Cabinets)
            DeleteFileA(path.c_str());
    }

    std::vector<std::string> RecordedFiles()
    {
        return StoredValueNames(HKEY_LOCAL_MACHINE, UninstallRoot + "Copier\\files");
    }

    std::string Dir;
    std::vector<std::string> Cabinets;
};

std::string Joined(const CBoundedStringList &list)
{
    std::string out;
    for (const CBoundedString &s : list)
        out += std::string(s.Text) + "|";
    return out;
}

TEST(SortUnique, StableAndCaseInsensitive)
{
    CBoundedStringList list;
    for (const char *s : {"b", "A", "a", "B", "c", "a"})
        list.push_back(CBoundedString(s));
    SortUnique(list);
    EXPECT_EQ("A|b|c|", Joined(list));
}

TEST_F(CopyEngine, NamesDropTheAtSignAndKeepSectionNames)
{
    CPrinterInf printer;
    OpenModel(printer, MakeInf("CopyFiles=@b.dll, @A.DLL,@a.dll,Extra\r\n", "DefaultDestDir=11\r\n"));
    CBoundedStringList names;
    EXPECT_EQ(1, printer.CollectCopyFiles(&names, nullptr));
    EXPECT_EQ("A.DLL|b.dll|Extra|", Joined(names));
    EXPECT_EQ(0, printer.CollectCopyFiles(nullptr, nullptr));
}

TEST_F(CopyEngine, PathsComeFromTheSectionsAndTheirDestinations)
{
    CPrinterInf printer;
    OpenModel(printer,
              MakeInf("CopyFiles=Core,Own,@single.dll,Missing,@SINGLE.DLL\r\n",
                      "DefaultDestDir=11\r\nOwn=10\r\nsingle.dll=10\r\n",
                      "[Core]\r\na.dll\r\nB.dll=ignored,2\r\nwith,comma.dll\r\n[Own]\r\nown.dll\r\n"));
    std::string system = printer.DirectoryIds[11].Text, windows = printer.DirectoryIds[10].Text;
    CBoundedStringList paths;
    EXPECT_EQ(1, printer.CollectCopyFiles(nullptr, &paths));
    std::set<std::string> got;
    for (const CBoundedString &p : paths)
        got.insert(CBoundedString(p).Text);
    std::set<std::string> expected = {system + "\\a.dll", system + "\\B.dll", system + "\\with,comma.dll",
                                      windows + "\\own.dll", system + "\\single.dll"};
    // Directory ids may or may not end in a backslash; compare normalised.
    std::set<std::string> normalised;
    for (std::string p : got) {
        size_t at;
        while ((at = p.find("\\\\")) != std::string::npos)
            p.erase(at, 1);
        normalised.insert(p);
    }
    std::set<std::string> expectedNormalised;
    for (std::string p : expected) {
        size_t at;
        while ((at = p.find("\\\\")) != std::string::npos)
            p.erase(at, 1);
        expectedNormalised.insert(p);
    }
    EXPECT_EQ(expectedNormalised, normalised);
    EXPECT_EQ(5u, paths.size()) << "the two forms of single.dll are one path";
}

TEST_F(CopyEngine, CabinetFilesReachEveryDestination)
{
    CPrinterInf printer;
    OpenModel(printer, MakeInf("CopyFiles=@listed.dll\r\nCopyCabs=main.cab , absent.cab\r\n",
                               "DefaultDestDir=11\r\n",
                               "[DestinationDirs.CAB]\r\nmain=10,copyA:10,copyB:10\r\n"));
    PutCabinet("main.cab", {{"one.txt", "first file", 0x5a21, 0x6000, 0x20}, {"two.txt", "second", 0x5a21, 0x6000, 0x20}});
    std::string windows = Windows();
    DeleteTree(windows + "copyA");
    DeleteTree(windows + "copyB");
    std::set<std::string> tempBefore = TempEntries();

    EXPECT_EQ(1, printer.CopyFiles());
    for (const char *dir : {"copyA\\", "copyB\\", ""}) {
        EXPECT_EQ("first file", ReadText(windows + dir + "one.txt")) << dir;
        EXPECT_EQ("second", ReadText(windows + dir + "two.txt")) << dir;
    }
    EXPECT_EQ(tempBefore, TempEntries()) << "the work directory and its files are removed";

    std::vector<std::string> recorded = RecordedFiles();
    std::set<std::string> names(recorded.begin(), recorded.end());
    EXPECT_EQ(7u, names.size());
    EXPECT_TRUE(names.count(windows + "copyA\\one.txt"));
    EXPECT_TRUE(names.count(windows + "two.txt"));
    bool listed = false;
    for (const std::string &name : names)
        listed |= name.find("listed.dll") != std::string::npos;
    EXPECT_TRUE(listed) << "a CopyFiles path is recorded though no file answers to it";

    DeleteTree(windows + "copyA");
    DeleteTree(windows + "copyB");
    DeleteFileA((windows + "one.txt").c_str());
    DeleteFileA((windows + "two.txt").c_str());
}

TEST_F(CopyEngine, AnEmptyElementEndsTheCabinetWalk)
{
    CPrinterInf printer;
    OpenModel(printer, MakeInf("CopyCabs=first.cab,,late.cab\r\n", "DefaultDestDir=11\r\n",
                               "[DestinationDirs.CAB]\r\nfirst=10,walkA\r\nlate=10,walkB\r\n"));
    PutCabinet("first.cab", {{"f.txt", "f", 0x5a21, 0x6000, 0x20}});
    PutCabinet("late.cab", {{"l.txt", "l", 0x5a21, 0x6000, 0x20}});
    std::string windows = Windows();
    EXPECT_EQ(1, printer.CopyFiles());
    EXPECT_TRUE(PathExists(windows + "walkA\\f.txt"));
    EXPECT_FALSE(PathExists(windows + "walkB\\l.txt"));
    DeleteTree(windows + "walkA");
}

TEST_F(CopyEngine, WithoutCopyCabsTheStageFailsAfterRecordingPaths)
{
    CPrinterInf printer;
    OpenModel(printer, MakeInf("CopyFiles=@only.dll\r\n", "DefaultDestDir=10\r\n"));
    std::set<std::string> tempBefore = TempEntries();
    EXPECT_EQ(0, printer.CopyFiles());
    std::vector<std::string> recorded = RecordedFiles();
    ASSERT_EQ(1u, recorded.size());
    EXPECT_NE(std::string::npos, recorded[0].find("only.dll"));
    EXPECT_EQ(tempBefore, TempEntries());
}

TEST_F(CopyEngine, OnlyOneDirectoryLevelIsCreated)
{
    CPrinterInf printer;
    OpenModel(printer, MakeInf("CopyCabs=deep.cab\r\n", "DefaultDestDir=11\r\n",
                               "[DestinationDirs.CAB]\r\ndeep=10,absentlevel\\second\r\n"));
    PutCabinet("deep.cab", {{"d.txt", "d", 0x5a21, 0x6000, 0x20}});
    std::string windows = Windows();
    DeleteTree(windows + "absentlevel");
    EXPECT_EQ(1, printer.CopyFiles());
    std::string target = windows + "absentlevel\\second\\d.txt";
    EXPECT_FALSE(PathExists(target));
    std::vector<std::string> recorded = RecordedFiles();
    ASSERT_EQ(1u, recorded.size());
    EXPECT_EQ(target, recorded[0]);
}

TEST_F(CopyEngine, ACabinetWithoutDestinationOrFileIsPassedOver)
{
    CPrinterInf printer;
    OpenModel(printer, MakeInf("CopyCabs=nodest.cab,gone.cab\r\nCopyFiles=\r\n", "DefaultDestDir=10\r\n",
                               "[DestinationDirs.CAB]\r\ngone=10,goneDir\r\n"));
    PutCabinet("nodest.cab", {{"n.txt", "n", 0x5a21, 0x6000, 0x20}});
    EXPECT_EQ(1, printer.CopyFiles());
    EXPECT_FALSE(PathExists(Windows() + "n.txt")) << "DefaultDestDir does not apply to cabinets";
    EXPECT_TRUE(RecordedFiles().empty());
}

}  // namespace
