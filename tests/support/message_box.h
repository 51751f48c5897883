// Message boxes in tests: a box is found by its caption (class "#32770", in
// any process of the prefix), read and answered with a button's command on a
// thread of its own, for a box that the calling thread or a child shows.
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
};

std::future<CSeenBox> AnswerBoxLater(const std::string &caption, int command, DWORD timeout = 30000);

#endif
