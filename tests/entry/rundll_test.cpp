#include <gtest/gtest.h>

#include <string>

#include "support/handles.h"
#include "test_support.h"

namespace {

typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);
const DWORD NoBoxWait = 500;  // long enough for a box that should not come

const char HelpText[] =
    "Help on using this function\n\n"
    "Sample Usage:\n"
    "RunDll32.exe e:\\tovrel.dll,Repair_RunDll /INF e:\\drv\\prn.inf /MFG Acme /DRV \"Acme Laser 2000\" /NAME AL2K\n"
    "\nRunDll32.exe starts tovrel.dll, Calls 'Repair_RunDll' with a command line of everything that follows.\n"
    "\n/INF pathname - the name and location of the printer inf.\n"
    "/MFG mfgname - the name of the printer manufacturer.\n"
    "/DRV drivername - the name of the printer driver.\n"
    "/NAME printername - the name of an instance of the printer driver.\n"
    "\ndouble quotes around a parameter are required if there is a white space in the name!";

// Help is a box, shown when the show command allows it, before any install.
// Otherwise what reaches Repair shows in the debug output: a failed load of
// the INF means the three keys arrived, none empty, with the INF path as given.
TEST(RepairRunDll, HelpBoxOrTheKeysReachRepair)
{
    const std::string path = BinaryDirectory() + "tovrel.dll";  // also the box's caption
    CLibrary module(LoadLibraryA(path.c_str()));
    auto entry = reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(GetProcAddress(module.Get(), "Repair_RunDll")));
    ASSERT_NE(nullptr, entry);
    const std::string dir = "C:\\tovrel tests dir\\";
    CreateDirectoryA(dir.c_str(), NULL);
    // Any file with a section loads; what Open checks after the load does not matter here.
    WriteText(dir + "laser.inf", "[Version]\r\nSignature=\"$Windows NT$\"\r\n");
    const std::string missing = "/INF C:\\missing\\a.inf", keys = " /MFG Acme /DRV \"Acme Laser 2000\" /NAME AL2K";
    const struct {
        std::string Arguments;
        bool Box, OpenFails;
        int Show = SW_SHOWNORMAL;
    } cases[] = {
        {"/?", true, false},
        {"help", true, false},
        {missing + " /MFG Acme /DRV Acme /help", true, false},
        {"/?", false, false, SW_HIDE},
        {"   ", false, false},
        {missing + keys, false, true},
        {"/inf C:\\missing\\a.inf /mfg Acme /drv Acme", false, true},
        {missing + " /DRV Acme /NAME AL2K", false, false},
        {missing + " /MFG /DRV Acme", false, false},
        {missing + " /MFG \"\" /DRV Acme", false, false},
        {"/INF \"" + dir + "laser.inf\"" + keys, false, false},
        {"/INF " + dir + "laser.inf" + keys, false, true},  // the blank cuts the path
    };
    for (const auto &c : cases) {
        std::future<CSeenBox> answer = AnswerBoxLater(path, IDOK, c.Box ? BoxWait : NoBoxWait);
        const std::string output = DebugOutputOf([&] { entry(NULL, NULL, c.Arguments.c_str(), c.Show); });
        CSeenBox box = answer.get();
        EXPECT_EQ(c.Box, box.Found) << c.Arguments << " show " << c.Show;
        EXPECT_EQ(c.Box ? HelpText : "", box.Text) << c.Arguments;
        EXPECT_EQ(c.Box ? 1u : 0u, box.Buttons.size()) << "an information box has OK only";
        EXPECT_EQ(c.OpenFails, output.find("CPrinterInf::Open,failure,Unable to open the file") !=
                                   std::string::npos) << c.Arguments;
    }
}

}  // namespace
