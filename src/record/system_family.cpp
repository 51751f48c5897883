#include <windows.h>

#include "record/system_family.h"

static const char Environment9x[] = "Windows 4.0";
static const char EnvironmentNtX86[] = "Windows NT x86";
static const char EnvironmentX64[] = "Windows x64";

bool IsNtFamily()
{
    OSVERSIONINFOA version;
    ZeroMemory(&version, sizeof version);
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExA(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
}

const char *NativeEnvironment()
{
    if (!IsNtFamily())
        return Environment9x;
    return sizeof(void *) == 8 ? EnvironmentX64 : EnvironmentNtX86;
}
