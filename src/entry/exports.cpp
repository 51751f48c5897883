#include <windows.h>

#include <cstring>

#include "tovrel.h"
#include "entry/command_line.h"
#include "entry/module.h"
#include "entry/printer_inf.h"
#include "entry/reboot_prompt.h"
#include "inf/bounded_string.h"
#include "registration/reg_key.h"

extern "C" void WINAPI Repair(const char *infPath, const char *manufacturer, const char *driverName,
                              const char *printerName, int *reboot, const char *deviceKey)
{
    CPrinterInf printer;
    CloseSiblingWindows();
    printer.Install(infPath, manufacturer, driverName, printerName, reboot, deviceKey);
}

extern "C" void WINAPI RebootPrompt(HWND window, const char *caption, const char *text)
{
    ShowRebootPrompt(window, caption, text);
}

namespace {

const char *const HelpLines[] = {
    "Help on using this function\n\n",
    "Sample Usage:\n",
    "RunDll32.exe e:\\tovrel.dll,Repair_RunDll /INF e:\\drv\\prn.inf /MFG Acme /DRV \"Acme Laser 2000\" /NAME AL2K\n",
    "\nRunDll32.exe starts tovrel.dll, Calls 'Repair_RunDll' with a command line of everything that follows.\n",
    "\n/INF pathname - the name and location of the printer inf.\n",
    "/MFG mfgname - the name of the printer manufacturer.\n",
    "/DRV drivername - the name of the printer driver.\n",
    "/NAME printername - the name of an instance of the printer driver.\n",
    "\ndouble quotes around a parameter are required if there is a white space in the name!",
};

void ShowHelp()
{
    char text[1024] = {0};
    for (const char *line : HelpLines) {
        size_t used = std::strlen(text);
        CopyBounded(text + used, line, sizeof text - used);
    }
    char caption[MAX_PATH] = {0};
    GetModuleFileNameA(GetModuleInstance(), caption, sizeof caption);
    MessageBoxA(GetDesktopWindow(), text, caption, MB_SYSTEMMODAL | MB_ICONINFORMATION);
}

// The first value of the key, without its quotes; empty when absent or too long.
CBoundedString FirstValue(const CCommandLine &line, const char *key)
{
    CBoundedString value;
    line.GetValues(key, value.Text, CBoundedString::Capacity, NULL, 0);
    StripChar(value.Text, '"');
    return value;
}

}  // namespace

extern "C" void CALLBACK Repair_RunDll(HWND window, HINSTANCE, const char *commandLine, int show)
{
    CCommandLine line;
    if (!line.Parse(commandLine))
        return;
    if (line.Find("help") >= 0 || line.Find("?") >= 0) {
        if (show)
            ShowHelp();
        return;
    }
    CBoundedString inf = FirstValue(line, "inf");
    CBoundedString mfg = FirstValue(line, "mfg");
    CBoundedString drv = FirstValue(line, "drv");
    CBoundedString name = FirstValue(line, "name");
    int reboot = 0;
    Repair(inf, mfg, drv, name, &reboot, "");
    if (reboot)
        RebootPrompt(window, drv, "");
}

extern "C" void CALLBACK VendorSetup(HWND window, HINSTANCE, const char *commandLine, int)
{
    CBoundedString printerName(commandLine);
    int reboot = 0;
    Repair("", "", "", printerName, &reboot, "");
    if (reboot)
        RebootPrompt(window, "", NULL);
}

namespace {

// Device descriptions come in capitals ("ACME LASER 2000"); a printer name
// reads better as "Acme Laser 2000". A word is a run of letters and the
// non-letters behind it; words whose first two characters are capitals keep
// only the first.
void NormaliseDescription(char *text)
{
    char *word = text;
    while (*word) {
        char *end = word;
        while (*end && IsCharAlphaA(*end))
            ++end;
        while (*end && !IsCharAlphaA(*end))
            ++end;
        if (end - word >= 2 && IsCharUpperA(word[0]) && IsCharUpperA(word[1]))
            CharLowerBuffA(word + 1, static_cast<DWORD>(end - word - 1));
        word = end;
    }
}

// A value that cannot be read, or a key that is not open, reads as empty.
// The whole buffer is offered, so that 259 characters and their NUL fit; a
// value stored without its NUL that fills every byte does not fit either.
CBoundedString ReadDeviceString(CRegKey &key, const char *name)
{
    CBoundedString value;
    key.QueryString(name, value.Text, CBoundedString::Capacity);
    return value;
}

}  // namespace

extern "C" void CALLBACK VendorInstaller(HWND window, HINSTANCE, const char *commandLine, int)
{
    CBoundedString deviceKey(commandLine);
    char *workingDirectory = NextToken(deviceKey, ' ');

    CRegKey key;
    key.Open(HKEY_LOCAL_MACHINE, deviceKey);
    CBoundedString description = ReadDeviceString(key, "DeviceDesc");
    CBoundedString manufacturer = ReadDeviceString(key, "Manufacturer");
    SetCurrentDirectoryA(workingDirectory ? workingDirectory : "");

    NormaliseDescription(description);
    int reboot = 0;
    Repair("", manufacturer, description, description, &reboot, deviceKey);
    if (key.IsOpen()) {
        // The device installer takes the device as set up once this is clear.
        const BYTE cleared[4] = {0, 0, 0, 0};
        RegSetValueExA(key.Handle(), "ConfigFlags", 0, REG_BINARY, cleared, sizeof cleared);
    }
    if (reboot)
        RebootPrompt(window, description, NULL);
}
