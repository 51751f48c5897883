// Calls one export of tovrel.dll the way the tests need it from a process of
// its own:
//   entry_host RebootPrompt [CAPTION [TEXT]]   ("-" for a null argument)
//   entry_host <RunDll entry> [anything]       (called with an empty text, so
//                                               this command line is parsed)
//   entry_host Service_Start NAME              (prints what the export gives)
// The exit code is 0x10, plus 1 when the shutdown privilege is enabled in
// the process token afterwards; 2 when the DLL or the export is missing.
#include <windows.h>

#include <cstdio>
#include <cstring>

typedef void(WINAPI *RebootPromptProc)(HWND, const char *, const char *);
typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);
typedef int(WINAPI *ServiceStartProc)(const char *, DWORD, const char **);

static bool ShutdownPrivilegeEnabled()
{
    HANDLE token = NULL;
    LUID shutdown = {};
    union {
        TOKEN_PRIVILEGES Privileges;
        char Bytes[4096];
    } buffer;
    DWORD size = 0;
    bool enabled = false;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) &&
        LookupPrivilegeValueA(NULL, SE_SHUTDOWN_NAME, &shutdown) &&
        GetTokenInformation(token, TokenPrivileges, &buffer, sizeof buffer, &size))
        for (DWORD i = 0; i < buffer.Privileges.PrivilegeCount; ++i)
            if (std::memcmp(&buffer.Privileges.Privileges[i].Luid, &shutdown, sizeof shutdown) == 0)
                enabled = (buffer.Privileges.Privileges[i].Attributes & SE_PRIVILEGE_ENABLED) != 0;
    CloseHandle(token);
    return enabled;
}

static const char *Argument(int argc, char **argv, int i)
{
    return i >= argc || std::strcmp(argv[i], "-") == 0 ? NULL : argv[i];
}

int main(int argc, char **argv)
{
    const int Missing = 2, Returned = 0x10, PrivilegeEnabled = 1;
    HMODULE dll = argc < 2 ? NULL : LoadLibraryA("tovrel.dll");
    FARPROC entry = dll ? GetProcAddress(dll, argv[1]) : NULL;
    if (!entry)
        return Missing;
    if (std::strcmp(argv[1], "Service_Start") == 0)
        std::printf("Service_Start gives %d\n",
                    reinterpret_cast<ServiceStartProc>(reinterpret_cast<void *>(entry))(Argument(argc, argv, 2), 0, NULL));
    else if (std::strcmp(argv[1], "RebootPrompt") == 0)
        reinterpret_cast<RebootPromptProc>(reinterpret_cast<void *>(entry))(NULL, Argument(argc, argv, 2),
                                                                           Argument(argc, argv, 3));
    else
        reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(entry))(NULL, NULL, "", SW_SHOWNORMAL);
    return Returned | (ShutdownPrivilegeEnabled() ? PrivilegeEnabled : 0);
}
