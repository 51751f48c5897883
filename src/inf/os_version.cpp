#include "inf/os_version.h"

COsVersion::COsVersion() : Release(0), Family(FamilyUnknown)
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
        Family = FamilyWindows9x;
        Release = Info.dwMinorVersion == 0 ? 2 : 3;
        break;
    case VER_PLATFORM_WIN32_NT:
        Family = FamilyWindowsNt;
        if (Info.dwMajorVersion >= 3 && Info.dwMajorVersion <= 5)
            Release = static_cast<int>(Info.dwMajorVersion) + 1;
        break;
    default:
        break;
    }
}
