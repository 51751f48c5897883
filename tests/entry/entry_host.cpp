// Calls one export of tovrel.dll the way the tests need it from a process of
// its own:
//   entry_host RebootPrompt [CAPTION [TEXT]]   ("-" for a null argument)
//   entry_host <RunDll entry> [anything]       (called with an empty text, so
//                                               this command line is parsed)
// The exit code is 0x10, plus 1 when the shutdown privilege is enabled in
// the process token afterwards; 2 when the DLL or the export is missing.
#include <windows.h>

#include <cstring>

typedef void(WINAPI *RebootPromptProc)(HWND, const char *, const char *);
typedef void(CALLBACK *RunDllProc)(HWND, HINSTANCE, const char *, int);

static bool ShutdownPrivilegeEnabled()
{
    HANDLE token = NULL;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return false;
    LUID shutdown = {};
    LookupPrivilegeValueA(NULL, "SeShutdownPrivilege", &shutdown);
    union {
        TOKEN_PRIVILEGES Privileges;
        char Bytes[4096];
    } buffer;
    DWORD size = 0;
    bool enabled = false;
    if (GetTokenInformation(token, TokenPrivileges, &buffer, sizeof buffer, &size)) {
        for (DWORD i = 0; i < buffer.Privileges.PrivilegeCount; ++i) {
            const LUID_AND_ATTRIBUTES &p = buffer.Privileges.Privileges[i];
            if (p.Luid.LowPart == shutdown.LowPart && p.Luid.HighPart == shutdown.HighPart)
                enabled = (p.Attributes & SE_PRIVILEGE_ENABLED) != 0;
        }
    }
    CloseHandle(token);
    return enabled;
}

static const char *Argument(int argc, char **argv, int i)
{
    if (i >= argc || std::strcmp(argv[i], "-") == 0)
        return NULL;
    return argv[i];
}

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    HMODULE dll = LoadLibraryA("tovrel.dll");
    if (!dll)
        return 2;
    FARPROC entry = GetProcAddress(dll, argv[1]);
    if (!entry)
        return 2;
    if (std::strcmp(argv[1], "RebootPrompt") == 0)
        reinterpret_cast<RebootPromptProc>(reinterpret_cast<void *>(entry))(NULL, Argument(argc, argv, 2),
                                                                           Argument(argc, argv, 3));
    else
        reinterpret_cast<RunDllProc>(reinterpret_cast<void *>(entry))(NULL, NULL, "", SW_SHOWNORMAL);
    return 0x10 | (ShutdownPrivilegeEnabled() ? 1 : 0);
}
