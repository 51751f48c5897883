#include "files/file_spec.h"

#include <shlobj.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "entry/printer_inf.h"
#include "files/temp_names.h"
#include "inf/bounded_string.h"
#include "registration/reg_key.h"
#include "registration/spooler.h"
#include "support/com.h"
#include "support/handles.h"
#include "support/shell.h"

namespace {

const char *const CurrentVersionKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
const char *const SafeSitesKey =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Internet Settings\\SafeSites";

DWORD PlatformId()
{
    OSVERSIONINFOA info;
    std::memset(&info, 0, sizeof info);
    info.dwOSVersionInfoSize = sizeof info;
    if (!GetVersionExA(&info))
        return VER_PLATFORM_WIN32s;
    return info.dwPlatformId;
}

typedef BOOL(WINAPI *GetColorDirectoryProc)(PCSTR, PSTR, PDWORD);

// Appends to a 260-byte buffer, keeping a byte free for a closing backslash.
void Append(char *out, const char *text)
{
    size_t used = std::strlen(out);
    if (used + 1 < MAX_PATH)
        CopyBounded(out + used, text, MAX_PATH - 1 - used);
}

// EnsureTrailingBackslash for a 260-byte buffer that may be full already.
void CloseDirectory(char *out)
{
    if (std::strlen(out) >= MAX_PATH - 1)
        out[MAX_PATH - 2] = 0;
    EnsureTrailingBackslash(out);
}

void TempFileName(char *out)
{
    char temp[MAX_PATH + 1] = "";
    GetTempPathA(MAX_PATH, temp);
    EnsureTrailingBackslash(temp);
    GetTempFileNameA(temp, "~~", 0, out);
}

// The producers of the identifiers that are no shell folder. Each writes at
// most MAX_PATH bytes into the work buffer, which has one spare byte for a
// trailing backslash.

void ModulePath(char *work) { GetModuleFileNameA(NULL, work, MAX_PATH); }

void ModuleDirectory(char *work)
{
    char module[MAX_PATH + 1] = "";
    GetModuleFileNameA(NULL, module, MAX_PATH);
    CFileSpec spec;
    spec.Resolve(FileSpecEmpty);
    spec.SetDirectory(module);
    CopyBounded(work, spec.DirectoryPath(), MAX_PATH);
}

void SystemDirectory(char *work) { GetSystemDirectoryA(work, MAX_PATH); }

void TempDirectory(char *work) { GetTempPathA(MAX_PATH, work); }

void PrinterDrivers(char *work) { PrinterDriverDirectory(NULL, work); }

void PrinterDrivers9x(char *work) { PrinterDriverDirectory(Windows9xEnvironment, work); }

void PrintProcessors(char *work) { PrintProcessorDirectory(work); }

void Color(char *work) { ColorDirectory(work, MAX_PATH); }

void CurrentDirectory(char *work) { GetCurrentDirectoryA(MAX_PATH, work); }

void DevicePath(char *work)
{
    ReadExpandedRegistryString(HKEY_LOCAL_MACHINE, CurrentVersionKey, "DevicePath", work);
}

void Web(char *work) { WebDirectory(work); }

void WebPrinters(char *work)
{
    WebDirectory(work);
    Append(work, "printers\\");
}

void WindowsSystem(char *work)
{
    WindowsDirectory(work);
    Append(work, "system\\");
}

// A directory of a fresh, unpredictable name, made here and now: a name that
// is taken already, by whatever, gives no directory.
void NewTempDirectory(char *work)
{
    char temp[MAX_PATH + 1] = "";
    GetTempPathA(MAX_PATH, temp);
    std::string directory = TempName(JoinPath(temp, ""), "") + "\\";
    if (directory.size() < MAX_PATH && CreateDirectoryA(directory.c_str(), NULL))
        CopyBounded(work, directory.c_str(), MAX_PATH);
}

// Closed rows end in a backslash even when their step gave no text, so that
// a failed step gives the single backslash.
const struct {
    int Id;
    void (*Produce)(char *work);
    bool Closed;
} Producers[] = {
    {FileSpecModulePath, ModulePath, false},
    {FileSpecModuleDirectory, ModuleDirectory, true},
    {FileSpecWindows, WindowsDirectory, false},
    {FileSpecSystem, SystemDirectory, true},
    {FileSpecTemp, TempDirectory, true},
    {FileSpecTempFile, TempFileName, false},
    {FileSpecPrinterDrivers, PrinterDrivers, true},
    {FileSpecPrinterDrivers9x, PrinterDrivers9x, true},
    {FileSpecPrintProcessors, PrintProcessors, true},
    {FileSpecPrintProcessors9x, PrintProcessors, true},
    {FileSpecColor, Color, true},
    {FileSpecCurrent, CurrentDirectory, true},
    {FileSpecDevicePath, DevicePath, true},
    {FileSpecWeb, Web, false},
    {FileSpecWebPrinters, WebPrinters, false},
    {FileSpecWindowsSystem, WindowsSystem, false},
    {FileSpecTempDirectory, NewTempDirectory, false},
};

// The shell folders, by the CSIDL that each identifier stands for.
const struct {
    int Id;
    int Csidl;
} ShellFolders[] = {
    {FileSpecDesktop, CSIDL_DESKTOP},
    {FileSpecCommonDesktopDirectory, CSIDL_COMMON_DESKTOPDIRECTORY},
    {FileSpecDesktopDirectory, CSIDL_DESKTOPDIRECTORY},
    {FileSpecFavorites, CSIDL_FAVORITES},
    {FileSpecAppData, CSIDL_APPDATA},
    {FileSpecInternetCache, CSIDL_INTERNET_CACHE},
    {FileSpecCookies, CSIDL_COOKIES},
    {FileSpecFonts, CSIDL_FONTS},
    {FileSpecHistory, CSIDL_HISTORY},
    {FileSpecNetHood, CSIDL_NETHOOD},
    {FileSpecPersonal, CSIDL_PERSONAL},
    {FileSpecPrintHood, CSIDL_PRINTHOOD},
    {FileSpecPrograms, CSIDL_PROGRAMS},
    {FileSpecRecent, CSIDL_RECENT},
    {FileSpecSendTo, CSIDL_SENDTO},
    {FileSpecStartMenu, CSIDL_STARTMENU},
    {FileSpecStartup, CSIDL_STARTUP},
    {FileSpecAltStartup, CSIDL_ALTSTARTUP},
    {FileSpecCommonStartup, CSIDL_COMMON_STARTUP},
    {FileSpecCommonAltStartup, CSIDL_COMMON_ALTSTARTUP},
    {FileSpecTemplates, CSIDL_TEMPLATES},
    {FileSpecProgramFiles, CSIDL_PROGRAM_FILES},
    {FileSpecPrinters, CSIDL_PRINTERS},
    {FileSpecCommonPrograms, CSIDL_COMMON_PROGRAMS},
    {FileSpecControls, CSIDL_CONTROLS},
};

// The text of one identifier, as Resolve takes it apart afterwards.
void ProduceIdentifier(int id, char *work)
{
    for (const auto &row : Producers) {
        if (row.Id != id)
            continue;
        row.Produce(work);
        work[MAX_PATH - 1] = 0;
        if (row.Closed)
            EnsureTrailingBackslash(work);
        return;
    }
    for (const auto &folder : ShellFolders)
        if (folder.Id == id)
            SpecialFolderPath(folder.Csidl, work, MAX_PATH);
    work[MAX_PATH - 1] = 0;
}

}  // namespace

int CFileSpec::Resolve(int id)
{
    char work[MAX_PATH + 1];
    std::memset(work, 0, sizeof work);
    if (id >= 1 && id <= FileSpecLast)
        ProduceIdentifier(id, work);
    std::memset(this, 0, sizeof *this);
    SetPath(work);
    return 1;
}

char *CFileSpec::ResolveFullPath(int id)
{
    Resolve(id);
    return FullPath();
}

void CFileSpec::Split(const char *path, bool takeDirectory, bool takeFile)
{
    if (!path)
        path = "";
    // Room for the longest text that four full parts can make; a longer text
    // cannot split into parts that fit.
    char copy[4 * PathPartSize];
    bool whole = std::strlen(path) < sizeof copy;
    CopyBounded(copy, path, sizeof copy);
    ReplaceIllegalChars(copy, '_');
    whole = SplitPath(copy, takeDirectory ? Drive : NULL, takeDirectory ? Directory : NULL,
                      takeFile ? Name : NULL, takeFile ? Extension : NULL, IsLeadByte) && whole;
    int taken = (takeDirectory ? LostDirectory : 0) | (takeFile ? LostFile : 0);
    Lost &= ~taken;
    if (!whole) {
        // A cut part would name another file: it is held empty and refused.
        Lost |= taken;
        if (takeDirectory)
            Drive[0] = Directory[0] = 0;
        if (takeFile)
            Name[0] = Extension[0] = 0;
    }
}

void CFileSpec::SetPath(const char *path) { Split(path, true, true); }

void CFileSpec::SetDirectory(const char *path) { Split(path, true, false); }

void CFileSpec::SetFileName(const char *file) { Split(file, false, true); }

void CFileSpec::AppendDirectory(const char *sub)
{
    if (sub && *sub && !(Lost & LostDirectory)) {
        if (*sub == '\\')
            ++sub;
        // Joined whole in a buffer with room for both, then measured.
        char joined[sizeof Directory + CBoundedString::Capacity + 1];
        CopyBounded(joined, Directory, sizeof Directory);
        EnsureTrailingBackslash(joined);
        size_t used = std::strlen(joined);
        // The sub text, its closing backslash and the NUL must have room.
        bool whole = std::strlen(sub) + 1 < sizeof joined - used;
        if (whole) {
            CopyBounded(joined + used, sub, sizeof joined - used);
            EnsureTrailingBackslash(joined);
            ReplaceIllegalChars(joined, '_');
            whole = std::strlen(joined) < PathPartSize;
        }
        if (whole) {
            CopyBounded(Directory, joined, sizeof Directory);
        } else {
            Lost |= LostDirectory;
            Drive[0] = Directory[0] = 0;
        }
    }
    FullPath();
}

namespace {

// Every composition fits here uncut: drive, colon, three parts of at most
// 256 characters, a backslash, a dot.
const size_t CompositionRoom = 2 + 3 * 256 + 2 + 1;

}  // namespace

char *CFileSpec::Compose(int parts, const char *drive, const char *directory, const char *name,
                         const char *extension)
{
    char whole[CompositionRoom];
    size_t length = MakePath(whole, sizeof whole, drive, directory, name, extension);
    if ((Lost & parts) || length > MAX_PATH - 1)
        Composed[0] = 0;
    else
        std::memcpy(Composed, whole, length + 1);
    return Composed;
}

bool CFileSpec::Fits() const
{
    char whole[CompositionRoom];
    return !Lost && MakePath(whole, sizeof whole, Drive, Directory, Name, Extension) <= MAX_PATH - 1;
}

size_t CFileSpec::ComposeInto(char *out, size_t size) const
{
    return MakePath(out, size, Drive, Directory, Name, Extension);
}

char *CFileSpec::FullPath()
{
    return Compose(LostDirectory | LostFile, Drive, Directory, Name, Extension);
}

char *CFileSpec::DirectoryPath() { return Compose(LostDirectory, Drive, Directory, NULL, NULL); }

char *CFileSpec::FileName() { return Compose(LostFile, NULL, NULL, Name, Extension); }

int CFileSpec::FileExists()
{
    CFileHandle file(CreateFileA(FullPath(), 0, 0, NULL, OPEN_EXISTING, 0, NULL));
    return file.IsValid() ? 1 : 0;
}

int CFileSpec::DirectoryExists() { return IsDirectory(DirectoryPath()); }

int CFileSpec::operator==(const CFileSpec &other) const
{
    // A spec that does not fit names no file, so it equals none.
    if (!Fits() || !other.Fits())
        return 0;
    char mine[sizeof Composed], theirs[sizeof Composed];
    ComposeInto(mine, sizeof mine);
    other.ComposeInto(theirs, sizeof theirs);
    return lstrcmpiA(mine, theirs) == 0;
}

int IsLeadByte(unsigned char c) { return IsDBCSLeadByte(c) ? 1 : 0; }

int IsDirectory(const char *path)
{
    char saved[MAX_PATH + 1] = "";
    GetCurrentDirectoryA(MAX_PATH, saved);
    BOOL entered = SetCurrentDirectoryA(path);
    SetCurrentDirectoryA(saved);
    return entered ? 1 : 0;
}

namespace {

// Expands the variables of text into MAX_PATH bytes. False, with nothing to
// use in out, when a step fails or the result would not fit.
bool ExpandText(const char *text, char *out)
{
    if (PlatformId() != VER_PLATFORM_WIN32_NT) {
        DWORD needed = ExpandEnvironmentStringsA(text, out, MAX_PATH);
        return needed && needed <= MAX_PATH && std::memchr(out, 0, MAX_PATH);
    }
    WCHAR wide[MAX_PATH], wideExpanded[MAX_PATH];
    if (!MultiByteToWideChar(CP_ACP, 0, text, -1, wide, MAX_PATH))
        return false;
    // The count includes the closing NUL; a larger one means it was cut.
    DWORD needed = ExpandEnvironmentStringsW(wide, wideExpanded, MAX_PATH);
    if (!needed || needed > MAX_PATH)
        return false;
    return WideCharToMultiByte(CP_ACP, 0, wideExpanded, -1, out, MAX_PATH, NULL, NULL) != 0;
}

}  // namespace

int ReadExpandedRegistryString(HKEY root, const char *subkey, const char *valueName, char *out)
{
    // The wrapper opens with all access although the value is only read: a
    // caller without write rights to the key takes the failure path, as the
    // installer always has.
    CRegKey key;
    CBoundedString raw;
    char expanded[MAX_PATH];
    if (!key.Open(root, subkey) || !key.QueryString(valueName, raw.Text, CBoundedString::Capacity) ||
        !ExpandText(raw, expanded))
        return 0;
    lstrcpyA(out, expanded);
    return 1;
}

void SpecialFolderPath(int csidl, char *out, int size)
{
    if (PlatformId() == VER_PLATFORM_WIN32s || size < 1)
        return;
    CComPointer<IMalloc> allocator;
    if (FAILED(SHGetMalloc(allocator.Put()))) {
        allocator.Detach();
        return;
    }
    if (!allocator.IsValid())
        return;
    CShellItemList folder(allocator.Get());
    char path[MAX_PATH + 1] = "";
    if (FAILED(SHGetSpecialFolderLocation(NULL, csidl, folder.Put())) || !folder.IsValid() ||
        !SHGetPathFromIDListA(folder.Get(), path))
        return;
    size_t length = std::strlen(path);
    // The backslash still has to fit behind the path.
    if (length + 1 < static_cast<size_t>(size)) {
        std::memcpy(out, path, length + 1);
        EnsureTrailingBackslash(out);
    }
}

void ColorDirectory(char *out, DWORD size)
{
    if (PlatformId() != VER_PLATFORM_WIN32s) {
        CLibrary mscms(LoadLibraryA("mscms.dll"));
        if (mscms.IsValid()) {
            GetColorDirectoryProc getColorDirectory = reinterpret_cast<GetColorDirectoryProc>(
                reinterpret_cast<void *>(GetProcAddress(mscms.Get(), "GetColorDirectoryA")));
            DWORD bytes = size;
            if (getColorDirectory && getColorDirectory(NULL, out, &bytes))
                return;
        }
    }
    char system[MAX_PATH + 1] = "";
    if (!GetSystemDirectoryA(system, MAX_PATH))
        return;
    EnsureTrailingBackslash(system);
    Append(system, "Color");
    CopyBounded(out, system, size);
    if (!IsDirectory(out))
        CreateDirectoryA(out, NULL);
}

int WebDirectory(char *out)
{
    if (!out)
        return 0;
    if (ReadExpandedRegistryString(HKEY_LOCAL_MACHINE, SafeSitesKey, "winweb", out)) {
        size_t length = std::strlen(out);
        if (length && out[length - 1] == '*')
            out[length - 1] = 0;
    } else {
        WindowsDirectory(out);
        Append(out, "Web");
    }
    CloseDirectory(out);
    return 1;
}

void WindowsDirectory(char *out)
{
    out[0] = 0;
    GetWindowsDirectoryA(out, MAX_PATH);
    CloseDirectory(out);
}

namespace {

// The INF directory ids and the identifier each one resolves to.
const struct {
    int InfId;
    int Identifier;
} InfDirectoryIds[] = {
    {DIRID_MODULE, FileSpecModuleDirectory},
    {DIRID_TEMP, FileSpecTemp},
    {DIRID_WINDOWS, FileSpecWindows},
    {DIRID_SYSTEM, FileSpecSystem},
    {DIRID_CONTROLS, FileSpecControls},
    {DIRID_PRINTERS, FileSpecPrinters},
    {DIRID_INF, FileSpecDevicePath},
    {DIRID_FONTS, FileSpecFonts},
    {DIRID_COLOR, FileSpecColor},
    {DIRID_SYSTEM16, FileSpecWindowsSystem},
    {DIRID_SPOOLDRIVERS, FileSpecPrinterDrivers},
    {DIRID_PRINTPROCESSOR, FileSpecPrintProcessors},
    {DIRID_PRINTER_DRIVERS, FileSpecPrinterDrivers},
    {DIRID_PRINTER_PROCESSORS, FileSpecPrintProcessors},
    {DIRID_PRINTER_SYSTEM, FileSpecSystem},
    {DIRID_PRINTER_COLOR, FileSpecColor},
    {DIRID_PRINTER_WEB, FileSpecWebPrinters},
    {DIRID_WEB, FileSpecWeb},
    {DIRID_WEB_PRINTERS, FileSpecWebPrinters},
    {DIRID_PRINTER_DRIVERS_9X, FileSpecPrinterDrivers9x},
    {DIRID_PRINTER_PROCESSORS_9X, FileSpecPrintProcessors9x},
    {DIRID_SHELL_DESKTOP, FileSpecDesktop},
    {DIRID_SHELL_COMMON_DESKTOPDIRECTORY, FileSpecCommonDesktopDirectory},
    {DIRID_SHELL_DESKTOPDIRECTORY, FileSpecDesktopDirectory},
    {DIRID_SHELL_FAVORITES, FileSpecFavorites},
    {DIRID_SHELL_APPDATA, FileSpecAppData},
    {DIRID_SHELL_INTERNET_CACHE, FileSpecInternetCache},
    {DIRID_SHELL_COOKIES, FileSpecCookies},
    {DIRID_SHELL_HISTORY, FileSpecHistory},
    {DIRID_SHELL_NETHOOD, FileSpecNetHood},
    {DIRID_SHELL_PERSONAL, FileSpecPersonal},
    {DIRID_SHELL_PRINTHOOD, FileSpecPrintHood},
    {DIRID_SHELL_PROGRAMS, FileSpecPrograms},
    {DIRID_SHELL_COMMON_PROGRAMS, FileSpecCommonPrograms},
    {DIRID_SHELL_RECENT, FileSpecRecent},
    {DIRID_SHELL_SENDTO, FileSpecSendTo},
    {DIRID_SHELL_STARTMENU, FileSpecStartMenu},
    {DIRID_SHELL_STARTUP, FileSpecStartup},
    {DIRID_SHELL_ALTSTARTUP, FileSpecAltStartup},
    {DIRID_SHELL_COMMON_STARTUP, FileSpecCommonStartup},
    {DIRID_SHELL_COMMON_ALTSTARTUP, FileSpecCommonAltStartup},
    {DIRID_SHELL_TEMPLATES, FileSpecTemplates},
    {DIRID_SHELL_PROGRAM_FILES, FileSpecProgramFiles},
};

}  // namespace

int IdentifierOfInfId(int infId)
{
    for (const auto &entry : InfDirectoryIds)
        if (entry.InfId == infId)
            return entry.Identifier;
    return FileSpecEmpty;
}

std::vector<int> InfDirectoryIdList()
{
    std::vector<int> ids;
    for (const auto &entry : InfDirectoryIds)
        ids.push_back(entry.InfId);
    return ids;
}

int CPrinterInf::BuildDirectoryIds()
{
    DirectoryIds.Resolve(*this);
    return 1;
}

// Only a path from a drive's root or a share places a file anywhere certain:
// an id whose folder could not be had (empty, or the lone backslash of a
// failed step) or that is no folder on disk names no directory, and nothing
// falls back to the current directory or a drive's root.
int CPrinterInf::FindDirectoryId(int id, char *out)
{
    CDirectoryIdMap::const_iterator found = DirectoryIds.find(id);
    if (found == DirectoryIds.end() || !IsAbsoluteDirectory(found->second))
        return 0;
    CopyBounded(out, found->second.Text, CBoundedString::Capacity);
    return 1;
}

// The id as an INF writes it, read as atoi reads it: the number at the head
// of the text counts, and text without one is id 0, which is no INF id. A
// number past the range of int is no id either, where atoi's result would
// be anybody's guess.
int CPrinterInf::FindDirectoryIdText(const char *id, char *out)
{
    const char *digits = id;
    while (*digits == ' ' || (*digits >= '\t' && *digits <= '\r'))
        ++digits;
    bool negative = *digits == '-';
    if (*digits == '-' || *digits == '+')
        ++digits;
    long long value = 0;
    for (; *digits >= '0' && *digits <= '9'; ++digits)
        if ((value = value * 10 + (*digits - '0')) > INT_MAX)
            return 0;
    return FindDirectoryId(static_cast<int>(negative ? -value : value), out);
}
