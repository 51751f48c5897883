#include <windows.h>
#include <winspool.h>

#include "record/spooler_lists.h"
#include "record/text_compare.h"
#include "report/printer_facts.h"
#include "support/handles.h"

static const char ValidMark[] = "IsPlenarcValid";
static const DWORD MarkValue = 1;

bool ReadLocalPrinters(std::vector<PrinterFacts> &printers)
{
    SpoolerList<PRINTER_INFO_2A> list;
    if (!ListLocalPrinters(list))
        return false;
    for (const PRINTER_INFO_2A &info : list) {
        if (!info.pPrinterName)
            continue;
        PrinterFacts printer;
        printer.Name = info.pPrinterName;
        printer.Port = info.pPortName ? info.pPortName : "";
        printer.Driver = info.pDriverName ? info.pDriverName : "";
        printers.push_back(printer);
    }
    return true;
}

std::vector<PrinterFacts> PrintersOfModel(const std::vector<PrinterFacts> &printers, const std::string &model)
{
    std::vector<PrinterFacts> ofModel;
    for (const PrinterFacts &printer : printers)
        if (EqualNoCase(printer.Driver, model))
            ofModel.push_back(printer);
    return ofModel;
}

bool ReadPrinterMark(const std::string &printer, std::string &shown)
{
    CPrinterHandle handle;
    if (!OpenPrinterA(const_cast<char *>(printer.c_str()), handle.Put(), NULL)) {
        shown = "cannot be opened";
        return false;
    }
    DWORD type = 0, needed = 0, value = 0;
    DWORD result = GetPrinterDataA(handle.Get(), const_cast<char *>(ValidMark), &type,
                                   reinterpret_cast<BYTE *>(&value), sizeof value, &needed);
    if (result != ERROR_SUCCESS) {
        shown = std::string(ValidMark) + " missing";
        return false;
    }
    shown = std::string(ValidMark) + (type == REG_DWORD ? " " + std::to_string(value) : " not a REG_DWORD");
    return type == REG_DWORD && needed == sizeof value && value == MarkValue;
}
