// A service program for the service tests: it runs until it is stopped,
// pauses and continues on request, and writes the arguments of its start to
// C:\tovrel-svc\<service name>.args.
#include <windows.h>

#include <fstream>
#include <string>

namespace {

SERVICE_STATUS_HANDLE StatusHandle;
SERVICE_STATUS Status;
HANDLE StopEvent;
const DWORD StopAnswerTime = 500;

void Report(DWORD state)
{
    Status.dwCurrentState = state;
    SetServiceStatus(StatusHandle, &Status);
}

// Stopped at once, so that a start right behind the stop finds the service
// stopped rather than still stopping.
DWORD WINAPI Handler(DWORD control, DWORD, void *, void *)
{
    Report(control == SERVICE_CONTROL_STOP       ? SERVICE_STOPPED
           : control == SERVICE_CONTROL_PAUSE    ? SERVICE_PAUSED
           : control == SERVICE_CONTROL_CONTINUE ? SERVICE_RUNNING
                                                 : Status.dwCurrentState);
    if (control == SERVICE_CONTROL_STOP)
        SetEvent(StopEvent);
    return NO_ERROR;
}

void WINAPI ServiceMain(DWORD argc, char **argv)
{
    const std::string name = argc > 0 ? argv[0] : "";
    StatusHandle = RegisterServiceCtrlHandlerExA(name.c_str(), Handler, NULL);
    if (!StatusHandle)
        return;
    CreateDirectoryA("C:\\tovrel-svc", NULL);
    std::ofstream record(("C:\\tovrel-svc\\" + name + ".args").c_str(), std::ios::binary | std::ios::trunc);
    for (DWORD i = 1; i < argc; ++i)
        record << argv[i] << "\n";
    record.close();
    StopEvent = CreateEventA(NULL, TRUE, FALSE, NULL);
    Status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    Status.dwControlsAccepted = SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_PAUSE_CONTINUE;
    Report(SERVICE_RUNNING);
    WaitForSingleObject(StopEvent, INFINITE);
    // Ending the process at once could cut off the answer to the stop
    // request, which the control thread is still sending.
    Sleep(StopAnswerTime);
}

}  // namespace

int main()
{
    SERVICE_TABLE_ENTRYA table[] = {{const_cast<char *>(""), ServiceMain}, {NULL, NULL}};
    return StartServiceCtrlDispatcherA(table) ? 0 : 1;
}
