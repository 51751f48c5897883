#include <gtest/gtest.h>

#include <windows.h>
#include <tlhelp32.h>

#include <string>
#include <vector>

#include "support/handles.h"
#include "test_support.h"

namespace {

const char Question[] = "A system reboot is required to complete \nthe installation of your printer.\n\n"
                        "(it won't work until you reboot)\n\nWould you like to reboot now?";
const char Wizard[] = "New Printer Wizard";

// entry_host's exit code: 0x10 when it returned, plus 1 when the shutdown
// privilege was enabled in its token afterwards.
const int Returned = 0x10, PrivilegeEnabled = 0x11;
const DWORD WinebootWait = 60000;

// Under Wine a restart request starts wineboot, which asks the windows of
// every process to end the session and then carries out what was left for
// the next start. The test waits for it: it would end this process too if it
// found a window of ours.
void WaitForWineboot()
{
    CFileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(snapshot.Get(), &entry); more; more = Process32Next(snapshot.Get(), &entry)) {
        CKernelHandle process(lstrcmpiA(entry.szExeFile, "wineboot.exe") == 0
                                  ? OpenProcess(SYNCHRONIZE, FALSE, entry.th32ProcessID) : NULL);
        EXPECT_TRUE(!process.IsValid() || WaitForSingleObject(process.Get(), WinebootWait) == WAIT_OBJECT_0);
    }
}

// The box, answered by a test thread; a rename left for the next start shows
// whether a restart happened. Yes enables the shutdown privilege on NT only.
void ExpectThePromptAndItsAnswers(bool nt)
{
    const struct {
        const char *Arguments, *Caption, *Text;
        int Answer, Exit;
    } cases[] = {
        {"", Wizard, Question, IDNO, Returned},
        {"\"\" \"\"", Wizard, Question, IDNO, Returned},
        {"\"Acme Laser 2000\" \"Restart the machine?\"", "Acme Laser 2000", "Restart the machine?", IDNO, Returned},
        {"- \"Restart the machine?\"", Wizard, "Restart the machine?", IDNO, Returned},
        {"", Wizard, Question, IDYES, nt ? PrivilegeEnabled : Returned},
    };
    for (const auto &c : cases) {
        const std::string dir = ScratchDirectory(), from = dir + "before.txt", to = dir + "after.txt";
        WriteText(from, "renamed at restart");
        ASSERT_TRUE(MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_DELAY_UNTIL_REBOOT));
        std::future<CSeenBox> answer = AnswerBoxLater(c.Caption, c.Answer);
        EXPECT_EQ(c.Exit, RunProcess("\"" + BinaryDirectory() + "entry_host.exe\" RebootPrompt " + c.Arguments))
            << c.Arguments << ": the caller survives";
        CSeenBox box = answer.get();
        ASSERT_TRUE(box.Found) << c.Arguments;
        EXPECT_EQ(c.Text, box.Text) << c.Arguments;
        EXPECT_EQ((std::vector<std::string>{"&Yes", "&No"}), box.Buttons) << c.Arguments;
        WaitForWineboot();
        EXPECT_EQ(c.Answer == IDYES, ReadText(to) == "renamed at restart") << c.Arguments;
    }
}

TEST(RebootPrompt, AnswersOnNt) { ExpectThePromptAndItsAnswers(true); }
TEST(RebootPromptWin98, AnswersOn9x) { ExpectThePromptAndItsAnswers(false); }

}  // namespace
