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

// Help is a box, shown when the show command allows it, before any install;
// what reaches Repair otherwise shows in the snapshots.
TEST(RepairRunDll, HelpBoxWhenTheShowCommandAllowsIt)
{
    const std::string path = BinaryDirectory() + "tovrel.dll";  // also the box's caption
    CLibrary module(LoadLibraryA(path.c_str()));
    auto entry = reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(GetProcAddress(module.Get(), "Repair_RunDll")));
    ASSERT_NE(nullptr, entry);
    const struct {
        std::string Arguments;
        bool Box;
        int Show = SW_SHOWNORMAL;
    } cases[] = {
        {"/?", true},
        {"help", true},
        {"/INF C:\\missing\\a.inf /MFG Acme /DRV Acme /help", true},
        {"/?", false, SW_HIDE},
        {"   ", false},
    };
    for (const auto &c : cases) {
        std::future<CSeenBox> answer = AnswerBoxLater(path, IDOK, c.Box ? BoxWait : NoBoxWait);
        entry(NULL, NULL, c.Arguments.c_str(), c.Show);
        CSeenBox box = answer.get();
        EXPECT_EQ(c.Box, box.Found) << c.Arguments << " show " << c.Show;
        EXPECT_EQ(c.Box ? HelpText : "", box.Text) << c.Arguments;
        EXPECT_EQ(c.Box ? 1u : 0u, box.Buttons.size()) << "an information box has OK only";
    }
}

}  // namespace
