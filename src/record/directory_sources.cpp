#include <windows.h>
#include <shlobj.h>
#include <winspool.h>

#include "record/directory_sources.h"
#include "record/registry_read.h"
#include "support/handles.h"

static const char Environment9x[] = "Windows 4.0";
static const char CurrentVersionKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
static const char DevicePathValue[] = "DevicePath";
static const char SafeSitesKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Internet Settings\\SafeSites";
static const char WebValue[] = "winweb";
static const char ColorLibrary[] = "mscms.dll";
static const char ColorFunction[] = "GetColorDirectoryA";

typedef BOOL(WINAPI *ColorDirectoryFunction)(PCSTR machine, PSTR buffer, PDWORD size);

static std::string WithBackslash(const char *text)
{
    std::string path(text);
    if (!path.empty() && path.back() != '\\')
        path += '\\';
    return path;
}

// An answer that filled the whole buffer may have been cut: it counts as none.
static std::string Answer(const char *buffer, DWORD length, bool succeeded)
{
    return succeeded && length < MAX_PATH ? WithBackslash(buffer) : std::string();
}

static std::string ShellFolder(int csidl)
{
    char path[MAX_PATH] = "";
    return Answer(path, 0, SHGetSpecialFolderPathA(NULL, path, csidl, FALSE) != FALSE);
}

static std::string SpoolerDirectory(bool processor, const char *environment)
{
    char path[MAX_PATH] = "";
    DWORD needed = 0;
    BYTE *buffer = reinterpret_cast<BYTE *>(path);
    BOOL done = processor ? GetPrintProcessorDirectoryA(NULL, const_cast<char *>(environment), 1, buffer, MAX_PATH, &needed)
                          : GetPrinterDriverDirectoryA(NULL, const_cast<char *>(environment), 1, buffer, MAX_PATH, &needed);
    return Answer(path, 0, done != FALSE);
}

static std::string ExpandedValue(const char *subkey, const char *value)
{
    CRegistryHandle key;
    DWORD type = 0;
    std::vector<BYTE> data;
    if (!OpenKeyToRead(HKEY_LOCAL_MACHINE, subkey, key) || !QueryValueBytes(key.Get(), value, type, data))
        return std::string();
    char expanded[MAX_PATH] = "";
    DWORD length = ExpandEnvironmentStringsA(TextOfBytes(data).c_str(), expanded, MAX_PATH);
    return length > 0 && length <= MAX_PATH ? std::string(expanded) : std::string();
}

static std::string WindowsDirectory()
{
    char path[MAX_PATH] = "";
    UINT length = GetWindowsDirectoryA(path, MAX_PATH);
    return Answer(path, length, length > 0);
}

static std::string SystemDirectory()
{
    char path[MAX_PATH] = "";
    UINT length = GetSystemDirectoryA(path, MAX_PATH);
    return Answer(path, length, length > 0);
}

static std::string TempDirectory()
{
    char path[MAX_PATH] = "";
    DWORD length = GetTempPathA(MAX_PATH, path);
    return Answer(path, length, length > 0);
}

// The colour system's own answer, or a "Color" folder below the system directory.
static std::string ColorDirectory()
{
    CLibrary library(LoadLibraryA(ColorLibrary));
    if (library.IsValid()) {
        ColorDirectoryFunction function = reinterpret_cast<ColorDirectoryFunction>(
            reinterpret_cast<void (*)()>(GetProcAddress(library.Get(), ColorFunction)));
        char path[MAX_PATH] = "";
        DWORD size = MAX_PATH;
        if (function && function(NULL, path, &size))
            return Answer(path, 0, true);
    }
    std::string system = SystemDirectory();
    return system.empty() ? system : system + "Color\\";
}

static std::string WebDirectory()
{
    std::string web = ExpandedValue(SafeSitesKey, WebValue);
    if (!web.empty() && web.back() == '*')
        web.pop_back();
    if (!web.empty())
        return WithBackslash(web.c_str());
    std::string windows = WindowsDirectory();
    return windows.empty() ? windows : windows + "Web\\";
}

std::string PrinterDriverDirectory(const char *environment)
{
    return SpoolerDirectory(false, environment);
}

std::string DirectoryOfSource(DirectorySource source, int folder)
{
    switch (source) {
    case DirectorySource::Windows: return WindowsDirectory();
    case DirectorySource::System: return SystemDirectory();
    case DirectorySource::Temp: return TempDirectory();
    case DirectorySource::Folder: return ShellFolder(folder);
    case DirectorySource::DriverDir: return SpoolerDirectory(false, NULL);
    case DirectorySource::DriverDir9x: return SpoolerDirectory(false, Environment9x);
    case DirectorySource::ProcessorDir: return SpoolerDirectory(true, NULL);
    case DirectorySource::Color: return ColorDirectory();
    case DirectorySource::DevicePath: return WithBackslash(ExpandedValue(CurrentVersionKey, DevicePathValue).c_str());
    case DirectorySource::Web: return WebDirectory();
    case DirectorySource::WebPrinters: return WebDirectory() + "printers\\";
    case DirectorySource::WindowsSystem: {
        std::string windows = WindowsDirectory();
        return windows.empty() ? windows : windows + "system\\";
    }
    case DirectorySource::Unknowable: break;
    }
    return std::string();
}
