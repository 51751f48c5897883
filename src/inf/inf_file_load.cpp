#include <windows.h>

#include <algorithm>
#include <new>
#include <vector>

#include "inf/inf_file.h"
#include "support/handles.h"

namespace {

// Behind the text: CR and LF give the last line its end, NUL ends the text.
const char TextEnd[] = {'\r', '\n', 0};
// The largest file read: its size, with TextEnd, stays a positive 32-bit number.
const DWORD LargestFile = 0x7FFFFFF0u;

// Reads the whole file into text and appends TextEnd. False, with nothing to
// parse, when the file is empty or too large, the memory cannot be had or the
// read fails or gives nothing. The file is closed as soon as it is read.
bool ReadWholeFile(CFileHandle &file, std::vector<char> &text)
{
    DWORD size = GetFileSize(file.Get(), NULL);
    if (size == 0 || size == INVALID_FILE_SIZE || size > LargestFile)
        return false;
    try {
        text.resize(size + sizeof TextEnd);
    } catch (const std::bad_alloc &) {
        return false;
    }
    DWORD read = 0;
    BOOL ok = ReadFile(file.Get(), text.data(), size, &read, NULL);
    file.Reset();
    if (!ok || !read)
        return false;
    std::copy(TextEnd, TextEnd + sizeof TextEnd, text.begin() + read);
    return true;
}

}  // namespace

int CInfFile::Load(const char *path)
{
    if (!Sections.empty())
        return 0;
    FilePath = CBoundedString();
    FilePath.Append(path);

    // No sharing: nobody may change the file while it is read in one piece.
    CFileHandle file(CreateFileA(path, GENERIC_READ, 0, NULL, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, NULL));
    if (!file.IsValid())
        return 0;
    std::vector<char> text;
    if (!ReadWholeFile(file, text))
        return 0;
    Parse(text.data());
    return 1;
}
