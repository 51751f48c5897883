#include "message_box.h"

namespace {

BOOL CALLBACK ReadChild(HWND child, LPARAM param)
{
    CSeenBox *box = reinterpret_cast<CSeenBox *>(param);
    char name[64] = {0}, text[2048] = {0};
    GetClassNameA(child, name, sizeof name);
    GetWindowTextA(child, text, sizeof text);
    if (lstrcmpiA(name, "Button") == 0)
        box->Buttons.push_back(text);
    else if (lstrcmpiA(name, "Static") == 0 && text[0])
        box->Text = text;
    return TRUE;
}

CSeenBox AnswerBox(const std::string &caption, int command, DWORD timeout)
{
    CSeenBox box;
    HWND window = NULL;
    for (DWORD start = GetTickCount(); !(window = FindWindowA("#32770", caption.c_str())); Sleep(50))
        if (GetTickCount() - start > timeout)
            return box;
    Sleep(200);  // the box may still be filling its controls
    box.Found = true;
    EnumChildWindows(window, ReadChild, reinterpret_cast<LPARAM>(&box));
    PostMessageA(window, WM_COMMAND, MAKEWPARAM(command, BN_CLICKED), 0);
    return box;
}

}  // namespace

std::future<CSeenBox> AnswerBoxLater(const std::string &caption, int command, DWORD timeout)
{
    return std::async(std::launch::async, [=] { return AnswerBox(caption, command, timeout); });
}
