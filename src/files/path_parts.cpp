#include "files/path_parts.h"

#include <cstring>

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
