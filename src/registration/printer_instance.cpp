#include "registration/printer_instance.h"

#include <cstring>

#include "entry/printer_inf.h"
#include "registration/reg_key.h"
#include "support/handles.h"

const char *const PrintersKey = "SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";
const char *const PrinterMarkValue = "IsPlenarcValid";

int CPrinterInf::InstallPrinter(const char *port)
{
    CBoundedString subkey(PrintersKey);
    subkey.Append(PrinterName);
    CRegKey key;
    key.Create(HKEY_LOCAL_MACHINE, subkey);

    // What the printer already holds goes back unchanged; a stored port
    // wins over the caller's.
    struct {
        const char *Name;
        const char *Default;
        CBoundedString Value;
    } stored[] = {{"Port", port && *port ? port : "LPT1:", CBoundedString()},
                  {"Share Name", "", CBoundedString()},
                  {"Description", "", CBoundedString()},
                  {"Location", "", CBoundedString()}};
    for (auto &value : stored) {
        DWORD type = REG_SZ, size = CBoundedString::Capacity;
        if (!key.QueryValue(value.Name, &type, reinterpret_cast<BYTE *>(value.Value.Text), &size))
            value.Value = CBoundedString(value.Default);
        value.Value.Text[CBoundedString::MaxLength] = 0;
    }

    PRINTER_INFO_2A info;
    std::memset(&info, 0, sizeof info);
    info.pPrinterName = PrinterName;
    info.pPortName = stored[0].Value;
    info.pShareName = stored[1].Value;
    info.pComment = stored[2].Value;
    info.pLocation = stored[3].Value;
    info.pDriverName = Model;
    info.pPrintProcessor = PrintProcessorName;
    info.pDatatype = DefaultDataType;

    CPrinterHandle printer;
    PRINTER_DEFAULTSA defaults = {NULL, NULL, PRINTER_ACCESS_ADMINISTER};
    if (OpenPrinterA(PrinterName, printer.Put(), &defaults)) {
        SetPrinterA(printer.Get(), 2, reinterpret_cast<BYTE *>(&info), 0);
    } else {
        printer.Release();
        printer.Reset(AddPrinterA(NULL, 2, reinterpret_cast<BYTE *>(&info)));
    }
    if (printer.IsValid()) {
        DWORD mark = 1;
        SetPrinterDataA(printer.Get(), const_cast<char *>(PrinterMarkValue), REG_DWORD,
                        reinterpret_cast<BYTE *>(&mark), sizeof mark);
    }
    return 1;
}
