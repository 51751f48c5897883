#include <windows.h>

#include <cstdio>
#include <vector>

#include "report/file_facts.h"
#include "report/sha256.h"
#include "support/handles.h"

static const char RootBlock[] = "\\";
static const int WordBits = 16;
static const DWORD WordMask = 0xFFFF;
static const DWORD ReadChunk = 64 * 1024;

bool FileIsPresent(const std::string &path, unsigned long long *size)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)
        || (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
        return false;
    if (size)
        *size = (static_cast<unsigned long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    return true;
}

// "a.b.c.d" of the fixed version record, or empty text for a file without one.
static std::string FileVersionText(const std::string &path)
{
    DWORD ignored = 0;
    DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
    if (size == 0)
        return std::string();
    std::vector<BYTE> block(size);
    VS_FIXEDFILEINFO *fixed = NULL;
    UINT fixedSize = 0;
    if (!GetFileVersionInfoA(path.c_str(), 0, size, block.data())
        || !VerQueryValueA(block.data(), RootBlock, reinterpret_cast<void **>(&fixed), &fixedSize)
        || fixed == NULL || fixedSize < sizeof(VS_FIXEDFILEINFO))
        return std::string();
    char text[64];
    std::snprintf(text, sizeof text, "%lu.%lu.%lu.%lu", fixed->dwFileVersionMS >> WordBits,
                  fixed->dwFileVersionMS & WordMask, fixed->dwFileVersionLS >> WordBits,
                  fixed->dwFileVersionLS & WordMask);
    return text;
}

// The digest of every byte up to the end of the file; a program that holds
// the file open, a loaded library among them, still lets it be read.
static void ReadDigest(const std::string &path, FileFacts &facts)
{
    CFileHandle file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                 NULL, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, NULL));
    if (!file.IsValid()) {
        facts.ReadError = GetLastError();
        return;
    }
    std::vector<char> chunk(ReadChunk);
    CSha256 digest;
    DWORD read = 0;
    BOOL readOk;
    while ((readOk = ReadFile(file.Get(), chunk.data(), ReadChunk, &read, NULL)) && read > 0)
        digest.Update(chunk.data(), read);
    if (!readOk) {
        facts.ReadError = GetLastError();
        return;
    }
    facts.Sha256 = digest.HexDigest();
}

FileFacts ReadFileFacts(const std::string &path, bool withContent)
{
    FileFacts facts;
    facts.Present = FileIsPresent(path, &facts.Size);
    if (!facts.Present)
        return facts;
    facts.Version = FileVersionText(path);
    if (withContent)
        ReadDigest(path, facts);
    return facts;
}

std::string PresenceText(const FileFacts &facts)
{
    std::string text = "present " + std::to_string(facts.Size) + " bytes";
    if (!facts.Version.empty())
        text += ", version " + facts.Version;
    return text;
}
