#include "inf/candidate_file.h"

#include <windows.h>

#include <cstring>
#include <new>
#include <vector>

#include "inf/candidate_match.h"
#include "support/handles.h"

namespace {

const unsigned char Utf8Mark[] = {0xEF, 0xBB, 0xBF};
const unsigned char Utf16Mark[] = {0xFF, 0xFE};
const unsigned char Utf16SwappedMark[] = {0xFE, 0xFF};
// The largest file read: what it becomes in 16 bits, and back in a code page
// of two bytes a character, stays within a positive int.
const DWORD LargestCandidate = 0x1FFFFFF0u;

bool StartsWith(const std::vector<char> &bytes, size_t size, const unsigned char *mark, size_t length)
{
    return size >= length && std::memcmp(bytes.data(), mark, length) == 0;
}

// The whole file and one byte more, for the reader's closing NUL.
bool ReadBytes(const char *path, std::vector<char> &bytes)
{
    // Shared as the profile calls share it: a file that another program has
    // open is read as before.
    CFileHandle file(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                 NULL, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, NULL));
    if (!file.IsValid())
        return false;
    DWORD size = GetFileSize(file.Get(), NULL);
    if (size == 0 || size == INVALID_FILE_SIZE || size > LargestCandidate)
        return false;
    try {
        bytes.resize(size + 1);
    } catch (const std::bad_alloc &) {
        return false;
    }
    DWORD read = 0;
    if (!ReadFile(file.Get(), bytes.data(), size, &read, NULL) || !read)
        return false;
    bytes.resize(read + 1);
    return true;
}

// The 16-bit text of the file, behind its mark; false for text of 8 bits
// without a mark, which stays as it is.
bool WideText(const std::vector<char> &bytes, size_t size, std::vector<WCHAR> &wide)
{
    if (StartsWith(bytes, size, Utf8Mark, sizeof Utf8Mark)) {
        int count = MultiByteToWideChar(CP_UTF8, 0, bytes.data() + 3, static_cast<int>(size - 3), NULL, 0);
        wide.resize(count);
        if (count)
            MultiByteToWideChar(CP_UTF8, 0, bytes.data() + 3, static_cast<int>(size - 3), wide.data(), count);
        return true;
    }
    bool swapped = StartsWith(bytes, size, Utf16SwappedMark, sizeof Utf16SwappedMark);
    if (!swapped && !StartsWith(bytes, size, Utf16Mark, sizeof Utf16Mark))
        return false;
    // A last odd byte is no character.
    wide.resize((size - 2) / 2);
    if (!wide.empty())
        std::memcpy(wide.data(), bytes.data() + 2, wide.size() * sizeof(WCHAR));
    if (swapped)
        for (WCHAR &c : wide)
            c = static_cast<WCHAR>((c << 8) | (c >> 8));
    return true;
}

// Text in 16 bits, or in UTF-8 behind its mark, goes over to the ANSI code
// page, as the profile calls hand it to their callers. bytes keeps room for
// one NUL behind the text.
bool ToCodePage(std::vector<char> &bytes)
{
    std::vector<WCHAR> wide;
    try {
        if (!WideText(bytes, bytes.size() - 1, wide))
            return true;
        int count = wide.empty() ? 0 : WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()),
                                                           NULL, 0, NULL, NULL);
        bytes.assign(count + 1, 0);
        if (count)
            WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), bytes.data(), count, NULL, NULL);
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

// The profile calls look for a bare file name in the Windows directory, not
// in the current one; a path that does not fit names no file.
bool ProfilePath(const char *path, CBoundedString &full)
{
    bool bare = !std::strpbrk(path, "\\/") && !(path[0] && path[1] == ':');
    full = CBoundedString();
    if (bare) {
        UINT length = GetWindowsDirectoryA(full, CBoundedString::Capacity);
        if (!length || length >= CBoundedString::Capacity)
            return false;
        full.Append("\\");
    }
    if (full.Length() + std::strlen(path) > CBoundedString::MaxLength)
        return false;
    full.Append(path);
    return true;
}

}  // namespace

bool ReadCandidateInf(const char *path, CCandidateInf &candidate)
{
    CBoundedString full;
    std::vector<char> text;
    if (!path || !ProfilePath(path, full) || !ReadBytes(full, text) || !ToCodePage(text))
        return false;
    size_t length = text.size() - 1;
    candidate.Read(text, length, &StopUnlessPrinter);
    return true;
}
