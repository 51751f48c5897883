#include <windows.h>

#include <gtest/gtest.h>

#include <new>
#include <set>
#include <string>

#include "cabinet_maker.h"
#include "entry/printer_inf.h"
#include "files/copy_engine.h"
#include "files/file_spec.h"
#include "registry_support.h"
#include "test_support.h"

namespace {

const std::string UninstallModel = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Copier";

std::string Windows()
{
    char path[MAX_PATH];
    GetWindowsDirectoryA(path, MAX_PATH);
    return std::string(path) + "\\";
}

std::string TempPath()
{
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    return temp;
}

std::set<std::string> TempEntries(const std::string &directory = TempPath())
{
    std::set<std::string> names;
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((directory + "*").c_str(), &found);
    if (find != INVALID_HANDLE_VALUE) {
        do
            names.insert(found.cFileName);
        while (FindNextFileA(find, &found));
        FindClose(find);
    }
    return names;
}

std::string Joined(const CBoundedStringList &list)
{
    std::string out;
    for (const CBoundedString &s : list)
        out += std::string(s.Text) + "|";
    return out;
}

// Opens an INF whose model "Copier" has the given install lines and
// destinations, as Install does before the stages; cabinets go to the printer
// driver directory, where the stage looks for them.
class CopyEngine : public ::testing::Test {
protected:
    void Open(const std::string &install, const std::string &destinations, const std::string &extra = "")
    {
        // Each row of a table opens afresh; the install object cannot be assigned.
        Printer.~CPrinterInf();
        new (&Printer) CPrinterInf;
        std::string path = ScratchDirectory() + "copy.inf";
        WriteText(path, "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
                        "[Manufacturer]\r\nAcme=AcmeDevices\r\n[AcmeDevices]\r\nCopier=Inst\r\n"
                        "[Inst]\r\nDataSection=Data\r\n" + install +
                        "[Data]\r\nDriverFile=drv.dll\r\nDataFile=drv.dat\r\nConfigFile=cfg.dll\r\nHelpFile=drv.hlp\r\n"
                        "[DestinationDirs]\r\n" + destinations + extra);
        ASSERT_EQ(1, Printer.Open(path.c_str()));
        ASSERT_EQ(1, Printer.ReadDeviceSection("Acme", "Copier", "Printer"));
        DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallModel);
    }
    void PutCabinet(const std::string &name, const std::vector<CStoredFile> &files)
    {
        CFileSpec spec;
        spec.Resolve(FileSpecPrinterDrivers);
        Cabinets.push_back(spec.DirectoryPath() + name);
        EXPECT_TRUE(WriteStoredCabinet(Cabinets.back(), files)) << Cabinets.back();
    }
    void TearDown() override
    {
        for (const std::string &path : Cabinets)
            DeleteFileA(path.c_str());
    }
    std::set<std::string> Recorded()
    {
        std::vector<std::string> names = StoredValueNames(HKEY_LOCAL_MACHINE, UninstallModel + "\\files");
        return std::set<std::string>(names.begin(), names.end());
    }

    CPrinterInf Printer;
    std::vector<std::string> Cabinets;
};

TEST_F(CopyEngine, NamesAndPathsAreSortedWithoutDuplicates)
{
    CBoundedStringList list;
    for (const char *s : {"b", "A", "a", "B", "c", "a"})
        list.push_back(CBoundedString(s));
    SortUnique(list);
    EXPECT_EQ("A|b|c|", Joined(list)) << "stable and case-insensitive";

    Open("CopyFiles=Core,Own,@single.dll, @Z.DLL,Missing,@SINGLE.DLL\r\n",
         "DefaultDestDir=11\r\nOwn=10\r\nsingle.dll=10\r\n",
         "[Core]\r\na.dll\r\nB.dll=ignored,2\r\nwith,comma.dll\r\n[Own]\r\nown.dll\r\n");
    CBoundedStringList names, paths;
    EXPECT_EQ(1, Printer.CollectCopyFiles(&names, nullptr));
    EXPECT_EQ("Core|Missing|Own|single.dll|Z.DLL|", Joined(names));
    EXPECT_EQ(1, Printer.CollectCopyFiles(nullptr, &paths));
    // "@" files go to DefaultDestDir, never to their own entry.
    std::string system = Printer.DirectoryIds[11].Text, windows = Printer.DirectoryIds[10].Text;
    EXPECT_EQ(windows + "own.dll|" + system + "a.dll|" + system + "B.dll|" + system + "single.dll|" + system +
                  "with,comma.dll|" + system + "Z.DLL|",
              Joined(paths));
}

TEST_F(CopyEngine, CabinetFilesReachEveryDestination)
{
    Open("CopyFiles=@listed.dll\r\nCopyCabs=main.cab , absent.cab\r\n", "DefaultDestDir=11\r\n",
         "[DestinationDirs.CAB]\r\nmain=10,copyA:10,copyB:10\r\n");
    PutCabinet("main.cab", {{"one.txt", "first file", 0x5a21, 0x6000, 0x20}, {"two.txt", "second", 0x5a21, 0x6000, 0x20}});
    const std::string windows = Windows();
    std::set<std::string> tempBefore = TempEntries(), expected = {Printer.DirectoryIds[11].Text + std::string("listed.dll")};

    EXPECT_EQ(1, Printer.CopyFiles());
    for (const char *dir : {"copyA\\", "copyB\\", ""}) {
        EXPECT_EQ("first file", ReadText(windows + dir + "one.txt")) << dir;
        EXPECT_EQ("second", ReadText(windows + dir + "two.txt")) << dir;
        expected.insert(windows + dir + "one.txt");
        expected.insert(windows + dir + "two.txt");
        DeleteFileA((windows + dir + "one.txt").c_str());
        DeleteFileA((windows + dir + "two.txt").c_str());
    }
    EXPECT_EQ(tempBefore, TempEntries()) << "the work directory and its files are removed";
    EXPECT_EQ(expected, Recorded()) << "a CopyFiles path is recorded though no file answers to it";
    RemoveDirectoryA((windows + "copyA").c_str());
    RemoveDirectoryA((windows + "copyB").c_str());
}

TEST_F(CopyEngine, TheWalkPassesOverWhatItCannotPlaceAndEndsAtAnEmptyElement)
{
    // deep: its subdirectory is two levels down, only one is made; nodest: no
    // destination (DefaultDestDir is not for cabinets); gone: no file; after:
    // behind a blank element, which names no cabinet; late: after the empty one.
    Open("CopyCabs=deep.cab,nodest.cab,gone.cab, ,after.cab,,late.cab\r\n", "DefaultDestDir=10\r\n",
         "[DestinationDirs.CAB]\r\ndeep=10,absentlevel\\second\r\ngone=10,goneDir\r\nlate=10,walkB\r\nafter=10\r\n");
    for (const char *name : {"deep", "nodest", "late", "after"})
        PutCabinet(name + std::string(".cab"), {{name + std::string(".txt"), "x", 0x5a21, 0x6000, 0x20}});
    const std::string windows = Windows();
    DeleteTree(windows + "absentlevel");
    EXPECT_EQ(1, Printer.CopyFiles());
    EXPECT_FALSE(PathExists(windows + "absentlevel\\second\\deep.txt"));
    EXPECT_FALSE(PathExists(windows + "nodest.txt"));
    EXPECT_FALSE(PathExists(windows + "walkB\\late.txt"));
    EXPECT_EQ("x", ReadText(windows + "after.txt"));
    EXPECT_EQ((std::set<std::string>{windows + "absentlevel\\second\\deep.txt", windows + "after.txt"}), Recorded());
    DeleteTree(windows + "absentlevel");
    DeleteFileA((windows + "after.txt").c_str());
}

// A target that does not fit 259 characters is refused whole, never cut into
// another name: no file, no directory, no record, for a cabinet's member and
// for a "CopyFiles" path alike. The subdirectory's length sets the target's.
TEST_F(CopyEngine, TargetsPastTheLimitAreRefusedNotCut)
{
    static const struct {
        size_t Target, Name;  // characters of the target path and of the member's name
        bool Installed;
    } cases[] = {
        {259, 40, true},
        {260, 40, false},   // each part fits, the whole does not
        {300, 40, false},   // the directory alone is past its part
        {300, 104, false},
    };
    // Open empties the scratch directory; the root is made inside it afterwards.
    const std::string root = ScratchDirectory() + "root\\";
    for (const auto &c : cases) {
        const std::string name = std::string(c.Name - 4, 'n') + ".txt", listed(c.Target - 4 - root.size(), 'c');
        const std::string sub(c.Target - root.size() - 1 - name.size(), 's'), target = root + sub + "\\" + name;
        Open("CopyFiles=@" + listed + ".dll\r\nCopyCabs=long.cab\r\n", "DefaultDestDir=10\r\n",
             "[DestinationDirs.CAB]\r\nlong=10," + sub + "\r\n");
        ASSERT_TRUE(CreateDirectoryA(root.c_str(), NULL));
        Printer.DirectoryIds[10] = CBoundedString(root.c_str());
        PutCabinet("long.cab", {{name, "long", 0x5a21, 0x6000, 0x20}});

        EXPECT_EQ(1, Printer.CopyFiles());
        EXPECT_EQ(c.Installed ? "long" : "", ReadText(target)) << c.Target << "/" << c.Name;
        const std::set<std::string> none, both = {root + listed + ".dll", target};
        EXPECT_EQ(c.Installed ? both : none, Recorded()) << c.Target << "/" << c.Name;
        if (!c.Installed) {
            EXPECT_EQ((std::set<std::string>{".", ".."}), TempEntries(root)) << c.Target << "/" << c.Name;
        }
    }
}

TEST_F(CopyEngine, WithoutCopyCabsTheStageFailsAfterRecordingPaths)
{
    Open("CopyFiles=@only.dll\r\n", "DefaultDestDir=10\r\n");
    std::set<std::string> tempBefore = TempEntries();
    EXPECT_EQ(0, Printer.CopyFiles());
    EXPECT_EQ(std::set<std::string>{Windows() + "only.dll"}, Recorded());
    EXPECT_EQ(tempBefore, TempEntries());
}

}  // namespace
