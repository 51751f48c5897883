#include "uninstall/library_unregister.h"

#include "record/product_keys.h"
#include "support/handles.h"
#include "uninstall/path_checks.h"
#include "uninstall/windows_error.h"

static const char Kind[] = "library";
static const char UnregisterExport[] = "DllUnregisterServer";

typedef HRESULT(STDAPICALLTYPE *UnregisterFunction)();

static std::string SystemDirectories()
{
    char system[MAX_PATH] = "", windows[MAX_PATH] = "";
    UINT systemLength = GetSystemDirectoryA(system, MAX_PATH), windowsLength = GetWindowsDirectoryA(windows, MAX_PATH);
    if (systemLength == 0 || systemLength >= MAX_PATH || windowsLength == 0 || windowsLength >= MAX_PATH)
        return std::string();
    return std::string(system) + ";" + windows;
}

// A library that the system's own search found is recorded by its bare
// name. It is looked for in the system's directories only: the current
// directory and this program's are not the install's.
static bool LocateLibrary(const std::string &recorded, std::string &path, std::string &why)
{
    if (recorded.find('\\') != std::string::npos) {
        path = recorded;
        why = RefusalOfPath(recorded);
        return why.empty();
    }
    why = RefusalOfName(recorded);
    if (!why.empty())
        return false;
    std::string directories = SystemDirectories();
    char found[MAX_PATH] = "";
    char *name = NULL;
    DWORD length = directories.empty() ? 0 : SearchPathA(directories.c_str(), recorded.c_str(), NULL, MAX_PATH, found, &name);
    path = length > 0 && length < MAX_PATH ? found : "";
    return true;
}

static UninstallItem CallUnregister(const std::string &subject, const std::string &path)
{
    CLibrary library(LoadLibraryA(path.c_str()));
    if (!library.IsValid())
        return MakeItem(Kind, subject, Outcome::Failed, path + " cannot be loaded, " + LastErrorText());
    UnregisterFunction unregister = reinterpret_cast<UnregisterFunction>(
        reinterpret_cast<void (*)()>(GetProcAddress(library.Get(), UnregisterExport)));
    if (!unregister)
        return MakeItem(Kind, subject, Outcome::Absent, path + " has no " + UnregisterExport + ": nothing to undo");
    HRESULT result = unregister();
    if (FAILED(result))
        return MakeItem(Kind, subject, Outcome::Failed, std::string(UnregisterExport) + " of " + path + " gave " + ResultText(result));
    return MakeItem(Kind, subject, Outcome::Removed,
                    std::string(UnregisterExport) + " of " + path + " succeeded; what it took back only the library knows");
}

static UninstallItem UnregisterLibrary(const CUninstallRun &run, const NamedValue &value)
{
    if (!IsTextValue(value))
        return RefusedValueType(Kind, value);
    std::string path, why, by;
    if (!LocateLibrary(value.Text, path, why))
        return MakeItem(Kind, value.Name, Outcome::Refused, "\"" + value.Text + "\": " + why);
    if (path.empty() || GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return MakeItem(Kind, value.Name, Outcome::Absent,
                        (path.empty() ? value.Text : path) + " is gone: its registration cannot be undone");
    Claim claim = run.Claims().Of(ClaimKind::Library, LibraryKey(value), by);
    if (claim != Claim::Free)
        return MakeItem(Kind, value.Name, claim == Claim::Claimed ? Outcome::Shared : Outcome::Failed, by);
    if (run.WhatIf())
        return MakeItem(Kind, value.Name, Outcome::Planned, "by " + std::string(UnregisterExport) + " of " + path);
    return CallUnregister(value.Name, path);
}

void UnregisterLibraries(CUninstallRun &run)
{
    for (const NamedValue &value : run.Record().Unregister)
        run.Settle(UnregisterLibrary(run, value), RecordUnregister, value.Name);
}
