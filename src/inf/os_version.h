// Which system family and release the library runs on, asked anew each time
// it matters.
#ifndef TOVREL_INF_OS_VERSION_H
#define TOVREL_INF_OS_VERSION_H

#include <windows.h>

class COsVersion {
public:
    enum { FamilyUnknown = 0, FamilyWin32s = 1, FamilyWindows9x = 2, FamilyWindowsNt = 3 };
    enum {
        ReleaseUnknown = 0,
        ReleaseWin32s = 1,
        ReleaseWindows95 = 2,  // 9x, minor version 0
        ReleaseWindows98 = 3,  // 9x, any later minor version (98, Me)
        ReleaseNt3 = 4,
        ReleaseNt4 = 5,
        ReleaseNt5 = 6,
    };

    COsVersion();

    OSVERSIONINFOA Info;
    int Release;
    int Family;
};

#endif
