#include "uninstall/path_checks.h"

#include <cctype>

static const size_t LongestPath = 259;
static const unsigned char FirstPrintable = 0x20;
static const char Separator = '\\';
static const char *const Devices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
static const char *const NumberedDevices[] = {"COM", "LPT"};
static const char ForbiddenCharacters[] = "/:*?\"<>|";

static std::string Upper(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// The system reads a device name whatever follows its first dot, and
// whatever blanks end it.
static bool IsDeviceName(const std::string &name)
{
    std::string stem = Upper(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    for (const char *device : Devices)
        if (stem == device)
            return true;
    for (const char *device : NumberedDevices)
        if (stem.size() == 4 && stem.compare(0, 3, device) == 0 && stem[3] >= '1' && stem[3] <= '9')
            return true;
    return false;
}

std::string RefusalOfName(const std::string &name)
{
    if (name.find_first_not_of(". ") == std::string::npos)
        return "a name of dots or blanks only";
    for (char c : name)
        if (static_cast<unsigned char>(c) < FirstPrintable || c == Separator ||
            std::string(ForbiddenCharacters).find(c) != std::string::npos)
            return "holds a character that no file name holds";
    if (IsDeviceName(name))
        return "names a device";
    return std::string();
}

static bool StartsAtDriveRoot(const std::string &path)
{
    return path.size() >= 3 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':' &&
           path[2] == Separator;
}

std::string RefusalOfPath(const std::string &path)
{
    if (path.size() > LongestPath)
        return "longer than " + std::to_string(LongestPath) + " characters";
    if (path.compare(0, 2, "\\\\") == 0)
        return "a share or device path, not a drive's";
    if (!StartsAtDriveRoot(path))
        return "not a full path from a drive's root";
    if (path.back() == Separator)
        return "names a directory";
    for (size_t at = 3; at <= path.size();) {
        size_t end = path.find(Separator, at);
        std::string name = path.substr(at, end == std::string::npos ? std::string::npos : end - at);
        if (name.empty())
            return "holds an empty name";
        if (name == "..")
            return "climbs out with ..";
        std::string why = RefusalOfName(name);
        if (!why.empty())
            return why;
        at = end == std::string::npos ? path.size() + 1 : end + 1;
    }
    return std::string();
}
