// Message boxes in tests: a box is found by its caption (class "#32770", in
// any process of the prefix), read and answered with a button's command.
#ifndef TOVREL_TESTS_MESSAGE_BOX_H
#define TOVREL_TESTS_MESSAGE_BOX_H

#include <windows.h>

#include <future>
#include <string>
#include <vector>

struct CSeenBox {
    bool Found = false;
    std::string Text;
    std::vector<std::string> Buttons;
    DWORD ProcessId = 0;
};

// Waits up to timeout for the box, reads it and posts WM_COMMAND command.
CSeenBox AnswerBox(const std::string &caption, int command, DWORD timeout = 30000);

// The same on a thread of its own, for a box that the calling thread shows.
std::future<CSeenBox> AnswerBoxLater(const std::string &caption, int command, DWORD timeout = 30000);

// Runs a command line as a debugged child, collecting its debug output, and
// gives its exit code (or -1 when it could not be started or did not end).
int RunCollectingDebugOutput(const std::string &commandLine, std::vector<std::string> *lines,
                             DWORD timeout = 120000);

#endif
