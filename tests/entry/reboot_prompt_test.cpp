#include <gtest/gtest.h>

#include <windows.h>
#include <tlhelp32.h>

#include <string>
#include <vector>

#include "message_box.h"
#include "test_support.h"

namespace {

const char Question[] = "A system reboot is required to complete \nthe installation of your printer.\n\n"
                        "(it won't work until you reboot)\n\nWould you like to reboot now?";
const char Wizard[] = "New Printer Wizard";

// entry_host's exit code: 0x10 when it returned, plus 1 when the shutdown
// privilege was enabled in its token afterwards.
const int Returned = 0x10, PrivilegeEnabled = 0x11;

std::string Host(const std::string &arguments)
{
    return "\"" + BinaryDirectory() + "entry_host.exe\" RebootPrompt " + arguments;
}

// Under Wine a restart request starts wineboot, which asks the windows of
// every process to end the session and then carries out what was left for
// the next start. The tests wait for it: it would end this process too if it
// found a window of ours.
void WaitForWineboot()
{
    std::vector<HANDLE> running;
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    ASSERT_NE(INVALID_HANDLE_VALUE, snapshot);
    PROCESSENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(snapshot, &entry); more; more = Process32Next(snapshot, &entry))
        if (lstrcmpiA(entry.szExeFile, "wineboot.exe") == 0)
            if (HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, entry.th32ProcessID))
                running.push_back(process);
    CloseHandle(snapshot);
    for (HANDLE process : running) {
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process, 60000));
        CloseHandle(process);
    }
}

// A rename left for the next start: the restart shows in whether it happened.
struct CPendingRename {
    CPendingRename()
    {
        std::string dir = ScratchDirectory();
        From = dir + "before.txt";
        To = dir + "after.txt";
        WriteText(From, "renamed at restart");
        EXPECT_TRUE(MoveFileExA(From.c_str(), To.c_str(), MOVEFILE_DELAY_UNTIL_REBOOT));
    }
    bool Done() const { return !PathExists(From) && ReadText(To) == "renamed at restart"; }
    std::string From, To;
};

TEST(RebootPrompt, AnswerNoTouchesNothing)
{
    const struct {
        const char *Arguments, *Caption, *Text;
    } cases[] = {
        {"", Wizard, Question},
        {"\"\" \"\"", Wizard, Question},
        {"\"Acme Laser 2000\" \"Restart the machine?\"", "Acme Laser 2000", "Restart the machine?"},
        {"- \"Restart the machine?\"", Wizard, "Restart the machine?"},
    };
    CPendingRename rename;
    for (const auto &c : cases) {
        std::future<CSeenBox> answer = AnswerBoxLater(c.Caption, IDNO);
        EXPECT_EQ(Returned, RunCollectingDebugOutput(Host(c.Arguments), nullptr)) << c.Arguments;
        CSeenBox box = answer.get();
        ASSERT_TRUE(box.Found) << c.Arguments;
        EXPECT_EQ(c.Text, box.Text) << c.Arguments;
        ASSERT_EQ(2u, box.Buttons.size()) << c.Arguments;
        EXPECT_EQ("&Yes", box.Buttons[0]);
        EXPECT_EQ("&No", box.Buttons[1]);
    }
    WaitForWineboot();
    EXPECT_FALSE(rename.Done()) << "no restart was asked for";
}

TEST(RebootPrompt, AnswerYesEnablesTheShutdownPrivilegeAndAsksForTheRestart)
{
    CPendingRename rename;
    std::future<CSeenBox> answer = AnswerBoxLater(Wizard, IDYES);
    EXPECT_EQ(PrivilegeEnabled, RunCollectingDebugOutput(Host(""), nullptr)) << "the caller survives";
    EXPECT_TRUE(answer.get().Found);
    WaitForWineboot();
    EXPECT_TRUE(rename.Done()) << "the restart carried out the pending rename";
}

TEST(RebootPrompt, AnswerYesOnWin98LeavesThePrivilegeAlone)
{
    CPendingRename rename;
    std::future<CSeenBox> answer = AnswerBoxLater(Wizard, IDYES);
    EXPECT_EQ(Returned, RunCollectingDebugOutput(Host(""), nullptr));
    EXPECT_TRUE(answer.get().Found);
    WaitForWineboot();
    EXPECT_TRUE(rename.Done()) << "the restart carried out the pending rename";
}

}  // namespace
