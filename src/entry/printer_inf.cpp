#include <windows.h>

#include "entry/printer_inf.h"

CPrinterInf::CPrinterInf() : RebootRequired(false) {}

CPrinterInf::~CPrinterInf() {}

void CloseSiblingWindows()
{
    static const struct {
        const char *Class;
        LPARAM Param;
    } Siblings[] = {
        {"QelRemoverFrameClass", 0}, {"QelMonitorFrameClass", 0}, {"QelJobStateClass", 0},
        {"QelSetupHostClass", 0},    {"QelLinkFrameClass", 0},    {"QelQueueHostClass", 0},
        {"QelNoticeClass", 0},       {"QELCOVERDLGCLASS", 0},     {"QELP", 1},
    };
    for (const auto &sibling : Siblings) {
        HWND window = FindWindowA(sibling.Class, NULL);
        if (window)
            SendMessageA(window, WM_CLOSE, 0, sibling.Param);
    }
    UINT quit = RegisterWindowMessageA("QelRemoverQuit");
    PostMessageA(HWND_BROADCAST, quit, 0, 0);
}

int CPrinterInf::Install(const char *infPath, const char *manufacturer, const char *driverName,
                         const char *printerName, int *reboot, const char *deviceKey)
{
    CBoundedString Inf(infPath), Mfg(manufacturer), Model(driverName), Name(printerName);
    CBoundedString Key(deviceKey);
    CBoundedString Class, HardwareId, ModelValue, PortName;
    bool Searched = false;

    // A device's own key wins on Windows 9x; it is also the only source of a port.
    if (!Key.IsEmpty())
        ReadDeviceKey(Key, Class, Model, HardwareId, Mfg, ModelValue, PortName);

    if (Inf.IsEmpty() || Mfg.IsEmpty() || Model.IsEmpty()) {
        if (!FindInf(Name, Inf, CBoundedString::Capacity, Mfg, CBoundedString::Capacity, Model,
                     CBoundedString::Capacity))
            return 0;
        Searched = true;
    }

    // At most one search and two opens. A store that the first Open filled
    // refuses the second, so a retry only helps when the first file could not
    // be read at all.
    if (!Open(Inf)) {
        if (Searched)
            return 0;
        if (!FindInf(Name, Inf, CBoundedString::Capacity, Mfg, CBoundedString::Capacity, Model,
                     CBoundedString::Capacity))
            return 0;
        if (!Open(Inf))
            return 0;
    }

    if (!ReadDeviceSection(Mfg, Model, Name))
        return 0;

    // From here on every stage runs whatever the one before it gave.
    CopyFiles();
    RegisterFiles();
    AddRegistry();
    AddProgramGroup();
    InstallServices();
    InstallPrintProcessor();
    InstallMonitor();
    InstallDriver();
    InstallPrinter(PortName);

    if (reboot)
        *reboot = IsRebootRequired();
    return 1;
}
