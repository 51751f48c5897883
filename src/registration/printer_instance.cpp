#include "registration/printer_instance.h"

#include <cstring>

#include "entry/printer_inf.h"
#include "registration/reg_key.h"
#include "registration/spooler.h"
#include "support/handles.h"

const char *const PrintersKey = "SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";
const char *const PrinterMarkValue = "IsPlenarcValid";

namespace {

// The port of a printer that has none stored and was given none.
const char DefaultPort[] = "LPT1:";
// The data of the mark: the value's presence is what counts.
const DWORD PrinterMarked = 1;

// What the printer already holds in the registry. It goes back to the
// spooler unchanged, so a re-installation keeps it.
struct CStoredSettings {
    CBoundedString Port;
    CBoundedString ShareName;
    CBoundedString Description;
    CBoundedString Location;
};

// The key comes into being ahead of the printer. A value that cannot be read
// takes its default; a stored port wins over the caller's.
void ReadStoredSettings(const CBoundedString &printerName, const char *port, CStoredSettings &stored)
{
    CBoundedString subkey(PrintersKey);
    subkey.Append(printerName);
    CRegKey key;
    key.Create(HKEY_LOCAL_MACHINE, subkey);
    const struct {
        const char *Name;
        const char *Default;
        CBoundedString *Value;
    } values[] = {{"Port", port && *port ? port : DefaultPort, &stored.Port},
                  {"Share Name", "", &stored.ShareName},
                  {"Description", "", &stored.Description},
                  {"Location", "", &stored.Location}};
    for (const auto &value : values)
        if (!key.QueryString(value.Name, value.Value->Text, CBoundedString::Capacity))
            *value.Value = CBoundedString(value.Default);
}

// Attributes, priorities and times stay 0, also for a printer that exists.
void FillPrinterInfo(CPrinterInf &inf, CStoredSettings &stored, PRINTER_INFO_2A &info)
{
    std::memset(&info, 0, sizeof info);
    info.pPrinterName = inf.PrinterName;
    info.pPortName = stored.Port;
    info.pShareName = stored.ShareName;
    info.pComment = stored.Description;
    info.pLocation = stored.Location;
    info.pDriverName = inf.Model;
    info.pPrintProcessor = inf.PrintProcessorName;
    info.pDatatype = inf.DefaultDataType;
}

// A printer of that name is brought up to date, else added. Gives no handle
// when the spooler refused to add it.
CPrinterHandle UpdateOrAddPrinter(char *name, PRINTER_INFO_2A &info)
{
    CPrinterHandle printer;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ACCESS_ADMINISTER};
    if (OpenPrinterA(name, printer.Put(), &defaults)) {
        SetPrinterA(printer.Get(), PrinterInfo2Level, reinterpret_cast<BYTE *>(&info), 0);
    } else {
        printer.Release();
        printer.Reset(AddPrinterA(NULL, PrinterInfo2Level, reinterpret_cast<BYTE *>(&info)));
    }
    return printer;
}

}  // namespace

int CPrinterInf::InstallPrinter(const char *port)
{
    CStoredSettings stored;
    ReadStoredSettings(PrinterName, port, stored);
    PRINTER_INFO_2A info;
    FillPrinterInfo(*this, stored, info);
    CPrinterHandle printer = UpdateOrAddPrinter(PrinterName, info);
    // Marked whatever SetPrinterA gave.
    if (printer.IsValid()) {
        DWORD mark = PrinterMarked;
        SetPrinterDataA(printer.Get(), const_cast<char *>(PrinterMarkValue), REG_DWORD,
                        reinterpret_cast<BYTE *>(&mark), sizeof mark);
    }
    return 1;
}
