#include "entry/reboot_prompt.h"

#include <cstring>

#include "entry/module.h"
#include "inf/os_version.h"
#include "support/handles.h"

CStringTable::CStringTable(HINSTANCE module) : Module(module), RingIndex(0)
{
    Buffer[0] = 0;
}

CStringTable::~CStringTable() {}

const char *CStringTable::Load(int id)
{
    Buffer[0] = 0;
    int length = LoadStringA(Module, id, Buffer, BufferSize);
    if (length < 0)
        length = 0;
    RingIndex = (RingIndex + 1) % RingSize;
    Ring[RingIndex].assign(Buffer, static_cast<size_t>(length));
    return Ring[RingIndex].c_str();
}

namespace {

void EnableShutdownPrivilege()
{
    CKernelHandle token;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token.Put()))
        return;
    TOKEN_PRIVILEGES privileges;
    ZeroMemory(&privileges, sizeof privileges);
    LookupPrivilegeValueA(NULL, "SeShutdownPrivilege", &privileges.Privileges[0].Luid);
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    // A refusal shows as a failed ExitWindowsEx, which the user is told of.
    AdjustTokenPrivileges(token.Get(), FALSE, &privileges, 0, NULL, NULL);
}

}  // namespace

void ShowRebootPrompt(HWND window, const char *caption, const char *text)
{
    CStringTable strings(GetModuleInstance());
    if (!caption || !*caption)
        caption = strings.Load(IdsRebootCaption);
    if (!text || !*text)
        text = strings.Load(IdsRebootQuestion);

    if (MessageBoxA(window, text, caption, MB_SYSTEMMODAL | MB_ICONHAND | MB_YESNO) != IDYES)
        return;
    if (COsVersion().Family == COsVersion::FamilyWindowsNt)
        EnableShutdownPrivilege();
    if (ExitWindowsEx(EWX_REBOOT, 0))
        return;

    DWORD error = GetLastError();
    char failure[CBoundedString::Capacity] = {0};
    LoadStringA(GetModuleInstance(), IdsRebootFailed, failure, sizeof failure);
    size_t used = std::strlen(failure);
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, NULL, error, GetUserDefaultLangID(), failure + used,
                   static_cast<DWORD>(sizeof failure - used), NULL);
    MessageBoxA(window, failure, caption, MB_SYSTEMMODAL | MB_ICONHAND);
}
