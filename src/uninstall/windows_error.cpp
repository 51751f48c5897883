#include "uninstall/windows_error.h"

#include <cstdio>
#include <cstring>

static const DWORD MessageSize = 512;

static std::string SystemMessage(DWORD code)
{
    char text[MessageSize] = "";
    DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, NULL, code, 0, text,
                                  MessageSize, NULL);
    std::string message(text, length < MessageSize ? length : 0);
    // The text goes inside a sentence of its own: no line end, no full stop.
    while (!message.empty() && std::strchr("\r\n .", message.back()))
        message.pop_back();
    return message;
}

std::string ErrorText(DWORD error)
{
    std::string message = SystemMessage(error);
    return "error " + std::to_string(error) + (message.empty() ? "" : ": " + message);
}

std::string ResultText(HRESULT result)
{
    char code[16];
    std::snprintf(code, sizeof code, "0x%08lx", static_cast<unsigned long>(result));
    std::string message = SystemMessage(static_cast<DWORD>(result));
    return std::string(code) + (message.empty() ? "" : ": " + message);
}

std::string LastErrorText()
{
    return ErrorText(GetLastError());
}
