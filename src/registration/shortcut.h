// The shell's link object, for the shortcuts of the model's program group.
#ifndef TOVREL_REGISTRATION_SHORTCUT_H
#define TOVREL_REGISTRATION_SHORTCUT_H

#include <windows.h>
#include <shlobj.h>

#include "support/com.h"

// What CShortcut throws when COM or the link object can't be had.
struct CShortcutException {
    HRESULT Result;
};

// One link object, and COM for as long as it lives.
class CShortcut {
public:
    CShortcut();
    virtual ~CShortcut();

    // Gives the result of the last call made.
    HRESULT Initialize();

    bool SetDescription(const char *text);
    bool SetPath(const char *text);
    bool SetWorkingDirectory(const char *text);
    bool SetArguments(const char *text);
    // Writes the link into the folder of path, named by its description.
    bool Save(const char *path);

    // Destroyed in reverse order of declaration: both interfaces are released
    // before the apartment is left, whether the destructor runs or the
    // constructor throws after taking any of them.
    CComApartment Com;
    CComPointer<IPersistFile> PersistFile;
    CComPointer<IShellLinkA> ShellLink;

private:
    CShortcut(const CShortcut &);
    CShortcut &operator=(const CShortcut &);
};

#endif
