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

    // Discovery by printer name or device key is not part of the library yet:
    // a run that lacks any of the three has nothing to start from.
    if (Inf.IsEmpty() || Mfg.IsEmpty() || Model.IsEmpty())
        return 0;
    if (!Open(Inf))
        return 0;
    if (!ReadDeviceSection(Mfg, Model, Name))
        return 0;

    if (reboot)
        *reboot = IsRebootRequired();
    return 1;
}
