#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "message_box.h"
#include "test_support.h"

namespace {

typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);

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

const char OpenFailure[] = "\nCPrinterInf::Open,failure,Unable to open the file";

std::string DllPath() { return BinaryDirectory() + "tovrel.dll"; }

std::string RunDll32(const std::string &entryAndArguments)
{
    return "rundll32.exe " + DllPath() + "," + entryAndArguments;
}

class RepairRunDll : public ::testing::Test {
protected:
    void SetUp() override
    {
        Module = LoadLibraryA(DllPath().c_str());
        ASSERT_NE((HMODULE)NULL, Module);
        char path[MAX_PATH] = {0};
        GetModuleFileNameA(Module, path, sizeof path);
        Caption = path;
    }
    void TearDown() override { FreeLibrary(Module); }
    HMODULE Module = NULL;
    std::string Caption;
};

TEST_F(RepairRunDll, HelpBoxOnRequestWhenShowAllowsIt)
{
    RunDllProc entry = reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(GetProcAddress(Module, "Repair_RunDll")));
    ASSERT_NE(nullptr, entry);
    const struct {
        const char *CommandLine;
        int Show;
        bool Box;
    } cases[] = {{"/?", 1, true}, {"help", SW_SHOWNORMAL, true}, {"/INF a.inf /MFG Acme /help", 1, true},
                 {"/?", 0, false}, {"   ", 1, false}};
    for (const auto &c : cases) {
        std::future<CSeenBox> answer = AnswerBoxLater(Caption, IDOK, c.Box ? 30000 : 1500);
        entry(NULL, NULL, c.CommandLine, c.Show);
        CSeenBox box = answer.get();
        EXPECT_EQ(c.Box, box.Found) << c.CommandLine << " show " << c.Show;
        if (c.Box) {
            EXPECT_EQ(HelpText, box.Text) << c.CommandLine;
            EXPECT_EQ(1u, box.Buttons.size()) << "an information box has OK only";
        }
    }
}

TEST_F(RepairRunDll, HelpBoxThroughRunDll32ComesBeforeAnyInstall)
{
    std::future<CSeenBox> answer = AnswerBoxLater(Caption, IDOK);
    std::vector<std::string> lines;
    EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32("Repair_RunDll /INF C:\\missing\\a.inf /MFG Acme /DRV Acme /?"),
                                          &lines));
    CSeenBox box = answer.get();
    ASSERT_TRUE(box.Found) << "no box headed " << Caption;
    EXPECT_NE(GetCurrentProcessId(), box.ProcessId) << "the box belongs to rundll32";
    EXPECT_EQ(HelpText, box.Text);
    EXPECT_EQ(0, std::count(lines.begin(), lines.end(), OpenFailure)) << "help installs nothing";
}

// What reaches Repair shows in its debug output: a failed load of the INF
// means the three keys arrived, none empty, with the INF path as given.
TEST_F(RepairRunDll, KeysReachRepairThroughRunDll32)
{
    std::string dir = "C:\\tovrel tests dir\\";
    CreateDirectoryA(dir.c_str(), NULL);
    // Any file with a section loads; what Open checks after the load does not matter here.
    WriteText(dir + "laser.inf", "[Version]\r\nSignature=\"$Windows NT$\"\r\n");
    std::string quoted = "/INF \"" + dir + "laser.inf\" /MFG Acme /DRV \"Acme Laser 2000\" /NAME AL2K";
    std::string bare = "/INF " + dir + "laser.inf /MFG Acme /DRV \"Acme Laser 2000\" /NAME AL2K";
    const struct {
        const char *Arguments;
        bool OpenFails;
    } cases[] = {
        {"/INF C:\\missing\\a.inf /MFG Acme /DRV \"Acme Laser 2000\" /NAME AL2K", true},
        {"/inf C:\\missing\\a.inf /mfg Acme /drv Acme", true},
        {"/INF C:\\missing\\a.inf /DRV Acme /NAME AL2K", false},
        {"/INF C:\\missing\\a.inf /MFG /DRV Acme", false},
        {"/INF C:\\missing\\a.inf /MFG \"\" /DRV Acme", false},
        {quoted.c_str(), false},
        {bare.c_str(), true},
    };
    for (const auto &c : cases) {
        std::vector<std::string> lines;
        EXPECT_EQ(0, RunCollectingDebugOutput(RunDll32(std::string("Repair_RunDll ") + c.Arguments), &lines))
            << c.Arguments;
        EXPECT_EQ(c.OpenFails, std::count(lines.begin(), lines.end(), OpenFailure) > 0) << c.Arguments;
    }
}

}  // namespace
