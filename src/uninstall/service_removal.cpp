#include "uninstall/service_removal.h"

#include "record/product_keys.h"
#include "record/system_family.h"
#include "support/handles.h"
#include "uninstall/windows_error.h"

static const char Kind[] = "service";
static const DWORD StopWaitMilliseconds = 30000;
static const DWORD PollMilliseconds = 200;

// Asks it to stop and waits until it says stopped, at most the bounded time.
static bool StopService(SC_HANDLE service, std::string &failure)
{
    SERVICE_STATUS status;
    if (!QueryServiceStatus(service, &status)) {
        failure = "its state cannot be read, " + LastErrorText();
        return false;
    }
    if (status.dwCurrentState != SERVICE_STOPPED && status.dwCurrentState != SERVICE_STOP_PENDING &&
        !ControlService(service, SERVICE_CONTROL_STOP, &status)) {
        failure = "it does not stop, " + LastErrorText();
        return false;
    }
    for (DWORD waited = 0; status.dwCurrentState != SERVICE_STOPPED; waited += PollMilliseconds) {
        if (waited >= StopWaitMilliseconds) {
            failure = "it has not stopped within " + std::to_string(StopWaitMilliseconds / 1000) + " s";
            return false;
        }
        Sleep(PollMilliseconds);
        if (!QueryServiceStatus(service, &status)) {
            failure = "its state cannot be read, " + LastErrorText();
            return false;
        }
    }
    return true;
}

// Gone once the manager no longer opens it; marked for deletion, it goes
// when the last program that holds it lets go, at the restart at the latest.
static UninstallItem CheckGone(SC_HANDLE manager, const std::string &name, const std::string &failure)
{
    CServiceHandle again(OpenServiceA(manager, name.c_str(), SERVICE_QUERY_STATUS));
    DWORD error = again.IsValid() ? ERROR_SUCCESS : GetLastError();
    if (error == ERROR_SERVICE_DOES_NOT_EXIST)
        return MakeItem(Kind, name, Outcome::Removed, "stopped and deleted");
    if (error == ERROR_SERVICE_MARKED_FOR_DELETE)
        return MakeItem(Kind, name, Outcome::Pending, "stopped and marked for deletion: a program still holds it");
    return MakeItem(Kind, name, Outcome::Failed, failure.empty() ? "still there after its deletion" : failure);
}

static UninstallItem RemoveService(SC_HANDLE manager, const std::string &name, bool whatIf)
{
    CServiceHandle service(OpenServiceA(manager, name.c_str(), SERVICE_STOP | SERVICE_QUERY_STATUS | DELETE));
    if (!service.IsValid()) {
        DWORD error = GetLastError();
        if (error == ERROR_SERVICE_DOES_NOT_EXIST)
            return MakeItem(Kind, name, Outcome::Absent, "");
        return MakeItem(Kind, name, Outcome::Failed, "cannot be opened, " + ErrorText(error));
    }
    if (whatIf)
        return MakeItem(Kind, name, Outcome::Planned, "stopped, then deleted");
    std::string failure;
    if (!StopService(service.Get(), failure))
        return MakeItem(Kind, name, Outcome::Failed, failure);
    if (!DeleteService(service.Get()))
        failure = LastErrorText();
    service.Reset();
    return CheckGone(manager, name, failure);
}

static UninstallItem RemoveRecordedService(CUninstallRun &run, SC_HANDLE manager, const std::string &noManager,
                                           const NamedValue &value)
{
    if (!IsTextValue(value))
        return RefusedValueType(Kind, value);
    std::string by;
    Claim claim = run.Claims().Of(ClaimKind::Service, value.Name, by);
    if (claim != Claim::Free)
        return MakeItem(Kind, value.Name, claim == Claim::Claimed ? Outcome::Shared : Outcome::Failed, by);
    // The 9x family has no service manager: the install could make none.
    if (!manager)
        return IsNtFamily() ? MakeItem(Kind, value.Name, Outcome::Failed, "the service manager cannot be opened, " + noManager)
                            : MakeItem(Kind, value.Name, Outcome::Absent, "no service manager on this system");
    return RemoveService(manager, value.Name, run.WhatIf());
}

void RemoveServices(CUninstallRun &run)
{
    if (run.Record().Services.empty())
        return;
    CServiceHandle manager(OpenSCManagerA(NULL, NULL, SC_MANAGER_CONNECT));
    std::string noManager = manager.IsValid() ? std::string() : LastErrorText();
    for (const NamedValue &value : run.Record().Services)
        run.Settle(RemoveRecordedService(run, manager.Get(), noManager, value), RecordServices, value.Name);
}
