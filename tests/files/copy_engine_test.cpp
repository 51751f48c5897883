#include <windows.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "cabinet_maker.h"
#include "entry/printer_inf.h"
#include "files/copy_engine.h"
#include "files/file_spec.h"
#include "test_support.h"

namespace {

const std::string UninstallFiles = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Copier\\files";

std::set<std::string> Recorded()
{
    std::vector<std::string> names = StoredValueNames(HKEY_LOCAL_MACHINE, UninstallFiles);
    return std::set<std::string>(names.begin(), names.end());
}

// Runs the copy stage of a model "Copier" with the given install lines and
// cabinet destinations, its directory id 10 set to root; each cabinet holds
// one file, named as the cabinet with ".txt" unless given.
void CopyStage(const std::string &root, const std::string &install, const std::string &cabinetDirs,
               const std::vector<std::pair<std::string, std::string>> &cabinets)
{
    const std::string path = ScratchDirectory() + "copy.inf";
    WriteText(path, "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
                    "[Manufacturer]\r\nAcme=AcmeDevices\r\n[AcmeDevices]\r\nCopier=Inst\r\n"
                    "[Inst]\r\nDataSection=Data\r\n" + install +
                    "[Data]\r\nDriverFile=drv.dll\r\nDataFile=drv.dat\r\nConfigFile=cfg.dll\r\nHelpFile=drv.hlp\r\n"
                    "[DestinationDirs]\r\nDefaultDestDir=10\r\n[DestinationDirs.CAB]\r\n" + cabinetDirs);
    CPrinterInf printer;
    ASSERT_EQ(1, printer.Open(path.c_str()));
    ASSERT_EQ(1, printer.ReadDeviceSection("Acme", "Copier", "Printer"));
    DeleteKeyTree(HKEY_LOCAL_MACHINE, UninstallFiles);
    CreateDirectoryA(root.c_str(), NULL);
    printer.DirectoryIds[10] = CBoundedString(root.c_str());
    CFileSpec drivers;
    drivers.Resolve(FileSpecPrinterDrivers);
    for (const auto &cabinet : cabinets)
        ASSERT_TRUE(WriteStoredCabinet(drivers.DirectoryPath() + cabinet.first + ".cab",
                                       {{cabinet.second, "x", 0x5a21, 0x6000, 0x20}}));
    EXPECT_EQ(1, printer.CopyFiles());
    for (const auto &cabinet : cabinets)
        DeleteFileA((drivers.DirectoryPath() + cabinet.first + ".cab").c_str());
}

// A target that does not fit 259 characters is refused whole, never cut into
// another name: no file, no directory, no record, for a cabinet's member and
// for a "CopyFiles" path alike. The subdirectory's length sets the target's.
TEST(CopyEngine, TargetsPastTheLimitAreRefusedNotCut)
{
    static const struct {
        size_t Target, Name;  // characters of the target path and of the member's name
        bool Installed;
    } cases[] = {
        {259, 40, true},
        {260, 40, false},  // each part fits, the whole does not
        {300, 40, false},  // the directory alone is past its part
        {300, 104, false},
    };
    for (const auto &c : cases) {
        const std::string root = ScratchDirectory() + "root\\", name = std::string(c.Name - 4, 'n') + ".txt";
        const std::string listed(c.Target - 4 - root.size(), 'c');
        const std::string sub(c.Target - root.size() - 1 - name.size(), 's'), target = root + sub + "\\" + name;
        CopyStage(root, "CopyFiles=@" + listed + ".dll\r\nCopyCabs=long.cab\r\n", "long=10," + sub + "\r\n",
                  {{"long", name}});
        EXPECT_EQ(c.Installed ? "x" : "", ReadText(target)) << c.Target << "/" << c.Name;
        const std::set<std::string> none, both = {root + listed + ".dll", target};
        EXPECT_EQ(c.Installed ? both : none, Recorded()) << c.Target << "/" << c.Name;
        WIN32_FIND_DATAA found;
        HANDLE find = FindFirstFileA((root + "?*").c_str(), &found);
        int made = 0;
        for (BOOL more = find != INVALID_HANDLE_VALUE; more; more = FindNextFileA(find, &found))
            made += found.cFileName[0] != '.';
        FindClose(find);
        EXPECT_EQ(c.Installed ? 1 : 0, made) << c.Target << "/" << c.Name << ": no directory left behind";
    }
}

}  // namespace
