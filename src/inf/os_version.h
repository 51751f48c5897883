// Which system family and release the library runs on, asked anew each time
// it matters.
#ifndef TOVREL_INF_OS_VERSION_H
#define TOVREL_INF_OS_VERSION_H

#include <windows.h>

class COsVersion {
public:
    enum { FamilyUnknown = 0, FamilyWin32s = 1, FamilyWindows9x = 2, FamilyWindowsNt = 3 };

    COsVersion();

    OSVERSIONINFOA Info;
    // 1 Win32s; 2 Windows 95 (9x minor 0); 3 later 9x; 4, 5, 6 NT 3, 4, 5; else 0.
    int Release;
    int Family;
};

#endif
