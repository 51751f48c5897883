// Runs only with cabinet.dll disabled in Wine: the install must go on without
// the decoder, extracting nothing.
#include <gtest/gtest.h>

#include <string>

#include "cabinet_maker.h"
#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "test_support.h"

namespace {

// The copy stage goes on without the decoder: the cabinet yields nothing, the
// stage still succeeds and the CopyFiles paths are on record.
TEST(CabinetDisabled, TheCopyStageSucceedsWithNothingExtracted)
{
    ASSERT_EQ(NULL, LoadLibraryA("CABINET")) << "this program must run with cabinet.dll disabled";
    const std::string directory = ScratchDirectory(), inf = directory + "copy.inf";
    WriteText(inf, "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n"
                   "[Manufacturer]\r\nAcme=AcmeDevices\r\n[AcmeDevices]\r\nCopier=Inst\r\n"
                   "[Inst]\r\nDataSection=Data\r\nCopyFiles=@listed.dll\r\nCopyCabs=main.cab\r\n"
                   "[Data]\r\nDriverFile=drv.dll\r\nDataFile=drv.dat\r\nConfigFile=cfg.dll\r\nHelpFile=drv.hlp\r\n"
                   "[DestinationDirs]\r\nDefaultDestDir=11\r\n[DestinationDirs.CAB]\r\nmain=10,unpacked\r\n");
    CFileSpec drivers;
    drivers.Resolve(FileSpecPrinterDrivers);
    const std::string cabinet = drivers.DirectoryPath() + std::string("main.cab");
    ASSERT_TRUE(WriteStoredCabinet(cabinet, {CStoredFile{"inside.txt", "inside", 0x2A43, 0x2000, 0x20}}));
    const std::string model = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data\\Copier\\files";

    CPrinterInf printer;
    ASSERT_EQ(1, printer.Open(inf.c_str()));
    ASSERT_EQ(1, printer.ReadDeviceSection("Acme", "Copier", "Printer"));
    EXPECT_EQ(1, printer.CopyFiles());
    EXPECT_FALSE(PathExists(printer.DirectoryIds[10].Text + std::string("\\unpacked\\inside.txt")));
    EXPECT_EQ(std::vector<std::string>{printer.DirectoryIds[11].Text + std::string("listed.dll")},
              StoredValueNames(HKEY_LOCAL_MACHINE, model));
    DeleteFileA(cabinet.c_str());
}

}  // namespace
