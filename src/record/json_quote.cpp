#include <windows.h>

#include "record/json_quote.h"
#include "record/json_text.h"

static std::string Utf8Of(const std::string &ansi)
{
    if (ansi.empty())
        return ansi;
    int wideLength = MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), NULL, 0);
    std::wstring wide(wideLength, L'\0');
    MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), &wide[0], wideLength);
    int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, NULL, 0, NULL, NULL);
    std::string utf8(length, '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, &utf8[0], length, NULL, NULL);
    return utf8;
}

std::string JsonQuoted(const std::string &ansi)
{
    return "\"" + JsonEscape(Utf8Of(ansi)) + "\"";
}
