// Which family of Windows runs the library, asked on the spot where it matters.
#ifndef TOVREL_SUPPORT_OS_VERSION_H
#define TOVREL_SUPPORT_OS_VERSION_H

#include <windows.h>

class COsVersion {
public:
    enum { FamilyUnknown = 0, FamilyWin32s = 1, FamilyWin9x = 2, FamilyNt = 3 };

    COsVersion() : Release(0), Family(FamilyUnknown)
    {
        ZeroMemory(&Info, sizeof Info);
        Info.dwOSVersionInfoSize = sizeof Info;
        if (!GetVersionExA(&Info))
            return;
        switch (Info.dwPlatformId) {
        case VER_PLATFORM_WIN32s:
            Family = FamilyWin32s;
            Release = 1;
            break;
        case VER_PLATFORM_WIN32_WINDOWS:
            Family = FamilyWin9x;
            Release = Info.dwMinorVersion == 0 ? 2 : 3;
            break;
        case VER_PLATFORM_WIN32_NT:
            Family = FamilyNt;
            Release = (Info.dwMajorVersion >= 3 && Info.dwMajorVersion <= 5) ? Info.dwMajorVersion + 1 : 0;
            break;
        }
    }

    OSVERSIONINFOA Info;
    int Release;
    int Family;
};

#endif
