#include <windows.h>

#include <cstdio>
#include <vector>

#include "report/file_check.h"
#include "report/text_compare.h"

static const char NewFileSuffix[] = ".new_file";
static const char DeleteOnRebootSuffix[] = ".delete_on_reboot";
static const char RootBlock[] = "\\";
static const int WordBits = 16;
static const DWORD WordMask = 0xFFFF;

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

static std::string PresenceText(unsigned long long size, const std::string &version)
{
    std::string text = "present " + std::to_string(size) + " bytes";
    if (!version.empty())
        text += ", version " + version;
    return text;
}

// The driver's files are named to the spooler in the driver directory, and
// the spooler takes them into its version directory: a driver file missing
// from the first is held when the spooler has it in the second.
static bool TakenBySpooler(const std::string &path, const FileCheckContext &context, std::string &detail)
{
    std::string directory = path.substr(0, path.find_last_of('\\') + 1);
    if (context.DriverDirectory.empty() || !EqualNoCase(directory, context.DriverDirectory))
        return false;
    std::string copy = SpoolerCopyOf(context.Driver, FileNameOf(path));
    unsigned long long size = 0;
    if (copy.empty() || EqualNoCase(copy, path) || !FileIsPresent(copy, &size))
        return false;
    detail = "taken by the spooler: " + copy + " " + PresenceText(size, FileVersionText(copy));
    return true;
}

ReportItem CheckRecordedFile(const std::string &path, const FileCheckContext &context)
{
    unsigned long long size = 0;
    bool present = FileIsPresent(path, &size);
    std::string detail = present ? PresenceText(size, FileVersionText(path)) : "missing";
    if (!present && TakenBySpooler(path, context, detail))
        present = true;
    bool waiting = false;
    for (const char *suffix : {NewFileSuffix, DeleteOnRebootSuffix})
        if (FileIsPresent(path + suffix, NULL)) {
            detail += std::string(", ") + suffix + " beside it";
            waiting = true;
        }
    if (IsPendingRename(context.Renames, path)) {
        detail += ", rename pending at restart";
        waiting = true;
    }
    ItemState state = waiting ? ItemState::Pending : (present ? ItemState::Held : ItemState::Drifted);
    return MakeItem("file", path, state, detail);
}

ReportItem CheckRegisteredLibrary(const std::string &name, const std::string &loadedFrom)
{
    std::string path = loadedFrom;
    // A library that the system's own search found is recorded by its bare
    // name: look where that search looks for an installed library.
    if (path.find('\\') == std::string::npos) {
        char found[MAX_PATH];
        char *filePart = NULL;
        DWORD length = SearchPathA(NULL, loadedFrom.c_str(), NULL, MAX_PATH, found, &filePart);
        if (length == 0 || length >= MAX_PATH)
            return MakeItem("library", name, ItemState::Drifted, "not found by the system's search");
        path = found;
    }
    unsigned long long size = 0;
    if (!FileIsPresent(path, &size))
        return MakeItem("library", name, ItemState::Drifted, path + " missing");
    return MakeItem("library", name, ItemState::Held, path + " present " + std::to_string(size) + " bytes");
}
