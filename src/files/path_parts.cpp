#include "files/path_parts.h"

#include <cstring>

#include "inf/bounded_string.h"

namespace {

// Copies [begin, end) into a part buffer, cut to its capacity. False when
// it had to be cut.
bool TakePart(char *target, size_t size, const char *begin, const char *end)
{
    if (!target)
        return true;
    size_t n = static_cast<size_t>(end - begin);
    bool whole = n <= size - 1;
    if (!whole)
        n = size - 1;
    std::memcpy(target, begin, n);
    target[n] = 0;
    return whole;
}

// Appends text at *at, keeping one byte for the NUL at out + size - 1.
void Put(char *&at, char *limit, const char *text, size_t n)
{
    size_t room = static_cast<size_t>(limit - at);
    if (n > room)
        n = room;
    std::memcpy(at, text, n);
    at += n;
}

}  // namespace

bool SplitPath(const char *path, char *drive, char *directory, char *name, char *extension,
               LeadBytePredicate isLeadByte)
{
    if (!path)
        path = "";
    const char *p = path;
    if (p[0] && p[1] == ':') {
        TakePart(drive, PathDriveSize, p, p + 2);
        p += 2;
    } else {
        TakePart(drive, PathDriveSize, p, p);
    }

    // One pass finds the last separator and the last dot; a trail byte of a
    // double-byte character is stepped over, never looked at.
    const char *lastSeparator = nullptr;
    const char *lastDot = nullptr;
    const char *end = p;
    while (*end) {
        unsigned char c = static_cast<unsigned char>(*end);
        if (isLeadByte && isLeadByte(c) && end[1]) {
            end += 2;
            continue;
        }
        if (c == '\\' || c == '/')
            lastSeparator = end;
        else if (c == '.')
            lastDot = end;
        ++end;
    }

    const char *nameStart = lastSeparator ? lastSeparator + 1 : p;
    const char *extensionStart = lastDot && lastDot >= nameStart ? lastDot : end;
    bool whole = TakePart(directory, PathPartSize, p, nameStart);
    whole = TakePart(name, PathPartSize, nameStart, extensionStart) && whole;
    return TakePart(extension, PathPartSize, extensionStart, end) && whole;
}

size_t MakePath(char *out, size_t size, const char *drive, const char *directory,
                const char *name, const char *extension)
{
    if (!out || !size)
        return 0;
    char *at = out;
    char *limit = out + size - 1;
    if (drive && *drive) {
        Put(at, limit, drive, 1);
        Put(at, limit, ":", 1);
    }
    if (directory && *directory) {
        size_t n = std::strlen(directory);
        Put(at, limit, directory, n);
        char last = directory[n - 1];
        if (last != '\\' && last != '/')
            Put(at, limit, "\\", 1);
    }
    if (name && *name)
        Put(at, limit, name, std::strlen(name));
    if (extension && *extension) {
        if (*extension != '.')
            Put(at, limit, ".", 1);
        Put(at, limit, extension, std::strlen(extension));
    }
    *at = 0;
    return static_cast<size_t>(at - out);
}

char *ReplaceIllegalChars(char *text, char substitute)
{
    if (!text)
        return text;
    if (!substitute)
        substitute = '_';
    for (char *p = text; *p; ++p)
        if (std::strchr("/*?\"<>|", *p))
            *p = substitute;
    return text;
}

char *EnsureTrailingBackslash(char *text)
{
    if (!text)
        return text;
    size_t n = std::strlen(text);
    if (n == 0 || text[n - 1] != '\\') {
        text[n] = '\\';
        text[n + 1] = 0;
    }
    return text;
}

namespace {

bool IsPathSeparator(char c)
{
    return c == '\\' || c == '/';
}

bool SameLetters(const char *text, const char *upper, size_t n)
{
    for (size_t i = 0; i < n; ++i) {
        char c = text[i];
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
        if (c != upper[i])
            return false;
    }
    return true;
}

// The system reads a device into a name by the text before its first dot,
// blanks at its end dropped, wherever the name stands; the digit of COM and
// LPT may also be a superscript 1, 2 or 3 of the ANSI code page.
bool IsDeviceName(const char *part, size_t n)
{
    size_t stem = 0;
    while (stem < n && part[stem] != '.')
        ++stem;
    while (stem && part[stem - 1] == ' ')
        --stem;
    static const char *const devices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    for (const char *device : devices)
        if (stem == std::strlen(device) && SameLetters(part, device, stem))
            return true;
    if (stem != 4 || !(SameLetters(part, "COM", 3) || SameLetters(part, "LPT", 3)))
        return false;
    return (part[3] >= '1' && part[3] <= '9') || (part[3] && std::strchr("\xB9\xB2\xB3", part[3]));
}

// "...", ". " and the like: the system drops trailing dots and blanks, and
// what such a part then means is not worth guessing.
bool IsOnlyDotsAndBlanks(const char *part, size_t n)
{
    for (size_t i = 0; i < n; ++i)
        if (part[i] != '.' && part[i] != ' ')
            return false;
    return true;
}

size_t Refuse(char *out)
{
    out[0] = 0;
    return 0;
}

// What follows the directory's own text in path, with base set to the length
// of that text without its trailing separators. Null when path does not go
// on from the directory with a separator, the directory is empty or does not
// fit size, or the rest is absolute or holds a colon.
const char *RestBelow(const char *directory, const char *path, size_t size, size_t &base)
{
    base = std::strlen(directory);
    while (base && IsPathSeparator(directory[base - 1]))
        --base;
    if (!base || base >= size || std::strncmp(path, directory, base) || !IsPathSeparator(path[base]))
        return nullptr;
    const char *rest = path + base + 1;
    if (IsPathSeparator(*rest) || std::strchr(rest, ':'))
        return nullptr;
    return rest;
}

}  // namespace

bool IsSingleName(const char *text)
{
    size_t n = text ? std::strlen(text) : 0;
    return n && !std::strpbrk(text, "\\/:") && !IsOnlyDotsAndBlanks(text, n) && !IsDeviceName(text, n);
}

bool IsAbsoluteDirectory(const char *text)
{
    if (!text)
        return false;
    bool drive = ((text[0] | 0x20) >= 'a' && (text[0] | 0x20) <= 'z') && text[1] == ':' && IsPathSeparator(text[2]);
    bool share = IsPathSeparator(text[0]) && IsPathSeparator(text[1]) && text[2] && !std::strchr("\\/?.", text[2]);
    return drive || share;
}

size_t ResolveInside(char *out, size_t size, const char *directory, const char *path)
{
    if (!out || !size)
        return 0;
    size_t base = 0;
    const char *rest = directory && path ? RestBelow(directory, path, size, base) : nullptr;
    if (!rest)
        return Refuse(out);

    std::memcpy(out, directory, base);
    size_t length = base;
    while (*rest) {
        const char *end = rest;
        while (*end && !IsPathSeparator(*end))
            ++end;
        size_t n = static_cast<size_t>(end - rest);
        if (n == 2 && rest[0] == '.' && rest[1] == '.') {
            if (length == base)
                return Refuse(out);
            while (out[--length] != '\\') {
            }
        } else if (n && !(n == 1 && rest[0] == '.')) {
            if (IsOnlyDotsAndBlanks(rest, n) || IsDeviceName(rest, n) || length + 1 + n >= size)
                return Refuse(out);
            out[length++] = '\\';
            std::memcpy(out + length, rest, n);
            length += n;
        }
        rest = *end ? end + 1 : end;
    }
    if (length == base)
        return Refuse(out);
    out[length] = 0;
    return length;
}

size_t FileNameOffset(const char *path, LeadBytePredicate isLeadByte)
{
    if (!path)
        return 0;
    size_t start = path[0] && path[1] == ':' ? 2 : 0;
    size_t offset = start;
    for (size_t i = start; path[i]; ++i) {
        unsigned char c = static_cast<unsigned char>(path[i]);
        if (isLeadByte && isLeadByte(c) && path[i + 1])
            ++i;
        else if (IsPathSeparator(path[i]))
            offset = i + 1;
    }
    return offset;
}

std::string JoinPath(const std::string &directory, const std::string &name)
{
    bool bareDrive = directory.size() == 2 && directory[1] == ':';
    if (directory.empty() || bareDrive || IsPathSeparator(directory[directory.size() - 1]))
        return directory + name;
    return directory + '\\' + name;
}

std::vector<std::string> SplitAtNuls(const char *block, size_t size)
{
    std::vector<std::string> strings;
    size_t start = 0;
    for (size_t i = 0; i < size; ++i) {
        if (block[i])
            continue;
        strings.push_back(std::string(block + start, i - start));
        start = i + 1;
    }
    if (start < size)
        strings.push_back(std::string(block + start, size - start));
    return strings;
}

bool CPathLess::operator()(const std::string &left, const std::string &right) const
{
    return CompareNoCase(left.c_str(), right.c_str()) < 0;
}
