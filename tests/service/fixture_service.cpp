// A service program for the service tests: it runs until it is stopped,
// pauses and continues on request, and writes the arguments of its start to
// C:\tovrel-svc\<service name>.args.
#include <windows.h>

#include <string>

namespace {

SERVICE_STATUS_HANDLE StatusHandle;
SERVICE_STATUS Status;
HANDLE StopEvent;

void Report(DWORD state)
{
    Status.dwCurrentState = state;
    SetServiceStatus(StatusHandle, &Status);
}

DWORD WINAPI Handler(DWORD control, DWORD, void *, void *)
{
    switch (control) {
    case SERVICE_CONTROL_STOP:
        // Stopped at once, so that a start right behind the stop finds the
        // service stopped rather than still stopping.
        Report(SERVICE_STOPPED);
        SetEvent(StopEvent);
        break;
    case SERVICE_CONTROL_PAUSE:
        Report(SERVICE_PAUSED);
        break;
    case SERVICE_CONTROL_CONTINUE:
        Report(SERVICE_RUNNING);
        break;
    default:
        Report(Status.dwCurrentState);
        break;
    }
    return NO_ERROR;
}

void WINAPI ServiceMain(DWORD argc, char **argv)
{
    const char *name = argc > 0 ? argv[0] : "";
    StatusHandle = RegisterServiceCtrlHandlerExA(name, Handler, NULL);
    if (!StatusHandle)
        return;
    std::string record;
    for (DWORD i = 1; i < argc; ++i)
        record += std::string(argv[i]) + "\n";
    CreateDirectoryA("C:\\tovrel-svc", NULL);
    HANDLE file = CreateFileA(("C:\\tovrel-svc\\" + std::string(name) + ".args").c_str(), GENERIC_WRITE, 0, NULL,
                              CREATE_ALWAYS, 0, NULL);
    if (file != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        WriteFile(file, record.data(), static_cast<DWORD>(record.size()), &written, NULL);
        CloseHandle(file);
    }
    StopEvent = CreateEventA(NULL, TRUE, FALSE, NULL);
    Status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    Status.dwControlsAccepted = SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_PAUSE_CONTINUE;
    Report(SERVICE_RUNNING);
    WaitForSingleObject(StopEvent, INFINITE);
}

}  // namespace

int main()
{
    SERVICE_TABLE_ENTRYA table[] = {{const_cast<char *>(""), ServiceMain}, {NULL, NULL}};
    return StartServiceCtrlDispatcherA(table) ? 0 : 1;
}
