#include "record/shortcut_line.h"

#include <cstdlib>

static std::string StripBlanks(const std::string &text)
{
    size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

ShortcutLine ParseShortcutLine(const std::string &line)
{
    ShortcutLine parsed;
    size_t start = 0;
    for (int i = 0; i < ShortcutFieldCount && start != std::string::npos; ++i) {
        size_t comma = i + 1 < ShortcutFieldCount ? line.find(',', start) : std::string::npos;
        std::string field = line.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        parsed.Fields[i] = StripBlanks(field);
        start = comma == std::string::npos ? std::string::npos : comma + 1;
    }
    return parsed;
}

long ReadFieldNumber(const std::string &field)
{
    return std::atol(field.c_str());
}

bool HoldsStringToken(const std::string &field)
{
    return field.find('%') != std::string::npos;
}

std::string AppendDirectoryPart(const std::string &directory, const std::string &part)
{
    if (part.empty())
        return directory;
    std::string joined = directory;
    if (joined.empty() || joined.back() != '\\')
        joined += '\\';
    joined += part[0] == '\\' ? part.substr(1) : part;
    if (joined.back() != '\\')
        joined += '\\';
    return joined;
}
