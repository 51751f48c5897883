// A path held as drive, directory, name and extension, filled from one of the
// installer's numbered directory identifiers or from text. Plain bytes: it is
// copied by value into lists and owns nothing.
#ifndef TOVREL_FILES_FILE_SPEC_H
#define TOVREL_FILES_FILE_SPEC_H

#include <windows.h>

#include "files/path_parts.h"

// The identifiers that Resolve knows; every other number gives the empty spec.
enum {
    FileSpecModulePath = 1,
    FileSpecModuleDirectory = 2,
    FileSpecWindows = 3,
    FileSpecSystem = 4,
    FileSpecTemp = 5,
    FileSpecTempFile = 10,
    FileSpecPrograms = 19,
    FileSpecPrinterDrivers = 28,
    FileSpecPrinterDrivers9x = 29,
    FileSpecPrintProcessors = 30,
    FileSpecColor = 35,
    FileSpecCurrent = 36,
    FileSpecDevicePath = 37,
    FileSpecWeb = 38,
    FileSpecWebPrinters = 39,
    FileSpecWindowsSystem = 40,
    FileSpecTempDirectory = 41,
    FileSpecLast = 42,
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

int IsDirectory(const char *path);
int ReadExpandedRegistryString(HKEY root, const char *subkey, const char *valueName, char *out);
void SpecialFolderPath(int csidl, char *out, int size);
void ColorDirectory(char *out, DWORD size);
int WebDirectory(char *out);
void WindowsDirectory(char *out);

#endif
