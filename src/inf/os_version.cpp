#include "inf/os_version.h"

namespace {

// The major versions of Windows NT that have a release number: 3 to 5.
const DWORD NtMajorFirst = 3;
const DWORD NtMajorLast = 5;

}  // namespace

COsVersion::COsVersion() : Release(ReleaseUnknown), Family(FamilyUnknown)
{
    ZeroMemory(&Info, sizeof Info);
    Info.dwOSVersionInfoSize = sizeof Info;
    if (!GetVersionExA(&Info))
        return;
    switch (Info.dwPlatformId) {
    case VER_PLATFORM_WIN32s:
        Family = FamilyWin32s;
        Release = ReleaseWin32s;
        break;
    case VER_PLATFORM_WIN32_WINDOWS:
        Family = FamilyWindows9x;
        Release = Info.dwMinorVersion == 0 ? ReleaseWindows95 : ReleaseWindows98;
        break;
    case VER_PLATFORM_WIN32_NT:
        Family = FamilyWindowsNt;
        if (Info.dwMajorVersion >= NtMajorFirst && Info.dwMajorVersion <= NtMajorLast)
            Release = ReleaseNt3 + static_cast<int>(Info.dwMajorVersion - NtMajorFirst);
        break;
    default:
        break;
    }
}
