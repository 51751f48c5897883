#include <windows.h>

#include "entry/printer_inf.h"
#include "files/interruption_points.h"

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

namespace {

// The device installer's key, on Windows 9x, names the model and its maker
// and is the only source of a port. Its other values are not used.
void ReadDeviceKeyValues(const char *deviceKey, CBoundedString &maker, CBoundedString &model,
                         CBoundedString &portName)
{
    CBoundedString key(deviceKey), deviceClass, hardwareId, modelValue;
    if (!key.IsEmpty())
        CPrinterInf::ReadDeviceKey(key, deviceClass, model, hardwareId, maker, modelValue, portName);
}

bool Discover(CPrinterInf &printer, const char *printerName, CBoundedString &inf, CBoundedString &maker,
              CBoundedString &model)
{
    return printer.FindInf(printerName, inf, CBoundedString::Capacity, maker, CBoundedString::Capacity,
                           model, CBoundedString::Capacity) != 0;
}

// At most one search and two opens. A store that the first Open filled
// refuses the second, so a retry only helps when the first file could not be
// read at all.
bool DiscoverAndOpen(CPrinterInf &printer, const char *printerName, CBoundedString &inf,
                     CBoundedString &maker, CBoundedString &model)
{
    bool searched = false;
    if (inf.IsEmpty() || maker.IsEmpty() || model.IsEmpty()) {
        if (!Discover(printer, printerName, inf, maker, model))
            return false;
        searched = true;
    }
    if (printer.Open(inf))
        return true;
    return !searched && Discover(printer, printerName, inf, maker, model) && printer.Open(inf);
}

// Every stage runs whatever the one before it gave.
void RunStages(CPrinterInf &printer, const char *portName)
{
    printer.CopyFiles();
    InterruptionPoint(InterruptCopied, "");
    printer.RegisterFiles();
    printer.AddRegistry();
    printer.AddProgramGroup();
    printer.InstallServices();
    printer.InstallPrintProcessor();
    printer.InstallMonitor();
    printer.InstallDriver();
    printer.InstallPrinter(portName);
}

}  // namespace

int CPrinterInf::Install(const char *infPath, const char *manufacturer, const char *driverName,
                         const char *printerName, int *reboot, const char *deviceKey)
{
    CBoundedString inf(infPath), maker(manufacturer), model(driverName), name(printerName), portName;
    ReadDeviceKeyValues(deviceKey, maker, model, portName);
    if (!DiscoverAndOpen(*this, name, inf, maker, model))
        return 0;
    if (!ReadDeviceSection(maker, model, name))
        return 0;
    RunStages(*this, portName);
    if (reboot)
        *reboot = IsRebootRequired();
    return 1;
}
