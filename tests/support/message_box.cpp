#include "message_box.h"

namespace {

BOOL CALLBACK ReadChild(HWND child, LPARAM param)
{
    CSeenBox *box = reinterpret_cast<CSeenBox *>(param);
    char name[64] = {0};
    char text[2048] = {0};
    GetClassNameA(child, name, sizeof name);
    GetWindowTextA(child, text, sizeof text);
    if (lstrcmpiA(name, "Button") == 0)
        box->Buttons.push_back(text);
    else if (lstrcmpiA(name, "Static") == 0 && text[0])
        box->Text = text;
    return TRUE;
}

}  // namespace

CSeenBox AnswerBox(const std::string &caption, int command, DWORD timeout)
{
    CSeenBox box;
    DWORD start = GetTickCount();
    HWND window = NULL;
    while (!(window = FindWindowA("#32770", caption.c_str()))) {
        if (GetTickCount() - start > timeout)
            return box;
        Sleep(50);
    }
    // The box may still be filling its controls.
    Sleep(200);
    box.Found = true;
    GetWindowThreadProcessId(window, &box.ProcessId);
    EnumChildWindows(window, ReadChild, reinterpret_cast<LPARAM>(&box));
    PostMessageA(window, WM_COMMAND, MAKEWPARAM(command, BN_CLICKED), 0);
    return box;
}

std::future<CSeenBox> AnswerBoxLater(const std::string &caption, int command, DWORD timeout)
{
    return std::async(std::launch::async, [=] { return AnswerBox(caption, command, timeout); });
}

int RunCollectingDebugOutput(const std::string &commandLine, std::vector<std::string> *lines, DWORD timeout)
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string command = commandLine;
    if (!CreateProcessA(NULL, &command[0], NULL, NULL, FALSE, DEBUG_ONLY_THIS_PROCESS, NULL, NULL, &startup,
                        &process))
        return -1;
    int exitCode = -1;
    DWORD start = GetTickCount();
    for (;;) {
        DEBUG_EVENT event = {};
        if (!WaitForDebugEvent(&event, 1000)) {
            if (GetTickCount() - start > timeout) {
                TerminateProcess(process.hProcess, 99);
                break;
            }
            continue;
        }
        DWORD status = DBG_CONTINUE;
        switch (event.dwDebugEventCode) {
        case CREATE_PROCESS_DEBUG_EVENT:
            if (event.u.CreateProcessInfo.hFile)
                CloseHandle(event.u.CreateProcessInfo.hFile);
            break;
        case LOAD_DLL_DEBUG_EVENT:
            if (event.u.LoadDll.hFile)
                CloseHandle(event.u.LoadDll.hFile);
            break;
        case OUTPUT_DEBUG_STRING_EVENT: {
            const OUTPUT_DEBUG_STRING_INFO &info = event.u.DebugString;
            std::string text(info.nDebugStringLength, 0);
            SIZE_T read = 0;
            if (!info.fUnicode &&
                ReadProcessMemory(process.hProcess, info.lpDebugStringData, &text[0], text.size(), &read)) {
                text.resize(read);
                while (!text.empty() && text.back() == 0)
                    text.pop_back();
                if (lines)
                    lines->push_back(text);
            }
            break;
        }
        case EXCEPTION_DEBUG_EVENT:
            if (event.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT)
                status = DBG_EXCEPTION_NOT_HANDLED;
            break;
        case EXIT_PROCESS_DEBUG_EVENT:
            exitCode = static_cast<int>(event.u.ExitProcess.dwExitCode);
            break;
        }
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId, status);
        if (event.dwDebugEventCode == EXIT_PROCESS_DEBUG_EVENT)
            break;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return exitCode;
}
