#include <windows.h>
#include <winspool.h>

#include "report/printer_check.h"
#include "report/spooler_lists.h"
#include "report/text_compare.h"
#include "support/handles.h"

static const char Kind[] = "printer";
static const char ValidMark[] = "IsPlenarcValid";
static const DWORD MarkValue = 1;

// The mark as "REG_DWORD 1", or what stands in its place.
static bool ReadMark(const char *printer, std::string &shown)
{
    CPrinterHandle handle;
    if (!OpenPrinterA(const_cast<char *>(printer), handle.Put(), NULL)) {
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

void CheckPrintersOfModel(const std::string &model, ReportItems &items)
{
    SpoolerList<PRINTER_INFO_2A> printers;
    if (!ListLocalPrinters(printers)) {
        items.push_back(MakeItem(Kind, "(spooler)", ItemState::Unchecked, "the printers cannot be listed"));
        return;
    }
    size_t before = items.size();
    for (const PRINTER_INFO_2A &printer : printers) {
        if (!printer.pPrinterName || !printer.pDriverName || !EqualNoCase(printer.pDriverName, model))
            continue;
        std::string mark;
        bool marked = ReadMark(printer.pPrinterName, mark);
        std::string port = printer.pPortName ? printer.pPortName : "";
        items.push_back(MakeItem(Kind, printer.pPrinterName, marked ? ItemState::Held : ItemState::Drifted,
                                 "port " + port + ", " + mark));
    }
    if (items.size() == before)
        items.push_back(MakeItem(Kind, "(none)", ItemState::Drifted, "no printer uses the driver"));
}
