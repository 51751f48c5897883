#include "record/text_compare.h"

static unsigned char LowerAscii(unsigned char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c - 'A' + 'a') : c;
}

int CompareNoCase(const std::string &a, const std::string &b)
{
    size_t length = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < length; ++i) {
        unsigned char ca = LowerAscii(static_cast<unsigned char>(a[i]));
        unsigned char cb = LowerAscii(static_cast<unsigned char>(b[i]));
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool EqualNoCase(const std::string &a, const std::string &b)
{
    return CompareNoCase(a, b) == 0;
}

std::string LowerCase(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(LowerAscii(static_cast<unsigned char>(c)));
    return text;
}

std::string FileNameOf(const std::string &path)
{
    size_t slash = path.find_last_of('\\');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}
