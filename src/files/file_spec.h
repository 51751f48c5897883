// A path held as drive, directory, name and extension, filled from one of the
// installer's numbered directory identifiers or from text. Plain bytes: it is
// copied by value into lists and owns nothing.
#ifndef TOVREL_FILES_FILE_SPEC_H
#define TOVREL_FILES_FILE_SPEC_H

#include <windows.h>

#include <vector>

#include "files/path_parts.h"

// The identifiers that Resolve knows; every other number, FileSpecEmpty
// above all, gives the empty spec. The shell folders are named after the
// CSIDL that each one asks for.
enum {
    FileSpecEmpty = 0,
    FileSpecModulePath = 1,
    FileSpecModuleDirectory = 2,
    FileSpecWindows = 3,
    FileSpecSystem = 4,
    FileSpecTemp = 5,
    FileSpecDesktop = 6,
    FileSpecCommonDesktopDirectory = 7,
    FileSpecDesktopDirectory = 8,
    FileSpecFavorites = 9,
    FileSpecTempFile = 10,
    FileSpecAppData = 11,
    FileSpecInternetCache = 12,
    FileSpecCookies = 13,
    FileSpecFonts = 14,
    FileSpecHistory = 15,
    FileSpecNetHood = 16,
    FileSpecPersonal = 17,
    FileSpecPrintHood = 18,
    FileSpecPrograms = 19,
    FileSpecRecent = 20,
    FileSpecSendTo = 21,
    FileSpecStartMenu = 22,
    FileSpecStartup = 23,
    FileSpecAltStartup = 24,
    FileSpecCommonStartup = 25,
    FileSpecCommonAltStartup = 26,
    FileSpecTemplates = 27,
    FileSpecPrinterDrivers = 28,
    FileSpecPrinterDrivers9x = 29,
    FileSpecPrintProcessors = 30,
    // The 9x twin of FileSpecPrintProcessors, asked for in the same way and
    // so the same directory.
    FileSpecPrintProcessors9x = 31,
    FileSpecProgramFiles = 32,
    FileSpecPrinters = 33,
    FileSpecCommonPrograms = 34,
    FileSpecColor = 35,
    FileSpecCurrent = 36,
    FileSpecDevicePath = 37,
    FileSpecWeb = 38,
    FileSpecWebPrinters = 39,
    FileSpecWindowsSystem = 40,
    FileSpecTempDirectory = 41,
    FileSpecControls = 42,
    FileSpecLast = FileSpecControls,
};

// The directory ids that an INF writes in its DestinationDirs and shortcut
// sections. BuildDirectoryIds resolves exactly these, each through the
// identifier named in its comment.
enum {
    DIRID_MODULE = 1,                       // FileSpecModuleDirectory
    DIRID_TEMP = 2,                         // FileSpecTemp
    DIRID_WINDOWS = 10,                     // FileSpecWindows
    DIRID_SYSTEM = 11,                      // FileSpecSystem
    DIRID_CONTROLS = 14,                    // FileSpecControls
    DIRID_PRINTERS = 15,                    // FileSpecPrinters
    DIRID_INF = 17,                         // FileSpecDevicePath
    DIRID_FONTS = 20,                       // FileSpecFonts
    DIRID_COLOR = 23,                       // FileSpecColor
    DIRID_SYSTEM16 = 50,                    // FileSpecWindowsSystem
    DIRID_SPOOLDRIVERS = 52,                // FileSpecPrinterDrivers
    DIRID_PRINTPROCESSOR = 55,              // FileSpecPrintProcessors

    // The printer family's own ids.
    DIRID_PRINTER_DRIVERS = 66000,          // FileSpecPrinterDrivers
    DIRID_PRINTER_PROCESSORS = 66001,       // FileSpecPrintProcessors
    DIRID_PRINTER_SYSTEM = 66002,           // FileSpecSystem
    DIRID_PRINTER_COLOR = 66003,            // FileSpecColor
    // FileSpecWebPrinters until ReadDeviceSection narrows it to the model's
    // own folder below that.
    DIRID_PRINTER_WEB = 66004,
    DIRID_WEB = 66600,                      // FileSpecWeb
    DIRID_WEB_PRINTERS = 66601,             // FileSpecWebPrinters
    DIRID_PRINTER_DRIVERS_9X = 66602,       // FileSpecPrinterDrivers9x
    DIRID_PRINTER_PROCESSORS_9X = 66603,    // FileSpecPrintProcessors9x

    // The shell folders, each through the identifier of the same name.
    DIRID_SHELL_DESKTOP = 66650,
    DIRID_SHELL_COMMON_DESKTOPDIRECTORY = 66651,
    DIRID_SHELL_DESKTOPDIRECTORY = 66652,
    DIRID_SHELL_FAVORITES = 66653,
    DIRID_SHELL_APPDATA = 66654,
    DIRID_SHELL_INTERNET_CACHE = 66655,
    DIRID_SHELL_COOKIES = 66656,
    DIRID_SHELL_HISTORY = 66657,
    DIRID_SHELL_NETHOOD = 66658,
    DIRID_SHELL_PERSONAL = 66659,
    DIRID_SHELL_PRINTHOOD = 66660,
    DIRID_SHELL_PROGRAMS = 66661,
    DIRID_SHELL_COMMON_PROGRAMS = 66662,
    DIRID_SHELL_RECENT = 66663,
    DIRID_SHELL_SENDTO = 66664,
    DIRID_SHELL_STARTMENU = 66665,
    DIRID_SHELL_STARTUP = 66666,
    DIRID_SHELL_ALTSTARTUP = 66667,
    DIRID_SHELL_COMMON_STARTUP = 66668,
    DIRID_SHELL_COMMON_ALTSTARTUP = 66669,
    DIRID_SHELL_TEMPLATES = 66670,
    DIRID_SHELL_PROGRAM_FILES = 66671,
};

class CFileSpec {
public:
    int Resolve(int id);
    char *ResolveFullPath(int id);

    void SetPath(const char *path);
    void SetDirectory(const char *path);
    void SetFileName(const char *file);
    void AppendDirectory(const char *sub);

    // Each of these rebuilds Composed and points into it: the text is good
    // until the next composing call on this spec. A path that does not fit
    // MAX_PATH - 1 characters, or a part that did not fit its field, composes
    // to empty text, never to a shorter name.
    char *FullPath();
    char *DirectoryPath();
    char *FileName();
    char *BaseName() { return Name; }

    // False when FullPath() would be refused: ask before using a path.
    bool Fits() const;

    int FileExists();
    int DirectoryExists();

    int operator==(const CFileSpec &other) const;
    int operator!=(const CFileSpec &other) const { return !(*this == other); }

    char Drive[4];
    char Directory[257];
    char Name[257];
    char Extension[257];
    char Composed[261];
    // Which parts were refused since they were last set (LostDirectory,
    // LostFile); such a part is held empty.
    int Lost;

private:
    enum { LostDirectory = 1, LostFile = 2 };
    void Split(const char *path, bool takeDirectory, bool takeFile);
    char *Compose(int parts, const char *drive, const char *directory, const char *name,
                  const char *extension);
    size_t ComposeInto(char *out, size_t size) const;
};

struct CFileSpecException {
    int Code;
};

// The LeadBytePredicate of the current code page, for every path that is
// split or cut on this platform.
int IsLeadByte(unsigned char c);

// The identifier through which an INF directory id resolves, FileSpecEmpty
// for a number that is no INF id; and every INF id, in the table's order.
int IdentifierOfInfId(int infId);
std::vector<int> InfDirectoryIdList();
int IsDirectory(const char *path);
int ReadExpandedRegistryString(HKEY root, const char *subkey, const char *valueName, char *out);
void SpecialFolderPath(int csidl, char *out, int size);
void ColorDirectory(char *out, DWORD size);
int WebDirectory(char *out);
void WindowsDirectory(char *out);

#endif
