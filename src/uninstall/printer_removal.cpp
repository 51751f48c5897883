#include "record/text_compare.h"
#include "support/handles.h"
#include "uninstall/spooler_environments.h"
#include "uninstall/spooler_removal.h"
#include "uninstall/windows_error.h"

static const char Kind[] = "printer";

bool PrintersOnDriver(const std::string &model, std::vector<std::string> &names)
{
    SpoolerList<PRINTER_INFO_2A> printers;
    if (!ListLocalPrinters(printers))
        return false;
    for (const PRINTER_INFO_2A &printer : printers)
        if (printer.pPrinterName && EqualNoCase(SpoolerText(printer.pDriverName), model))
            names.push_back(printer.pPrinterName);
    return true;
}

static bool DeleteNamedPrinter(const std::string &name, std::string &failure)
{
    PRINTER_DEFAULTSA access = {NULL, NULL, PRINTER_ALL_ACCESS};
    CPrinterHandle printer;
    if (!OpenPrinterA(const_cast<char *>(name.c_str()), printer.Put(), &access)) {
        failure = "cannot be opened, " + LastErrorText();
        return false;
    }
    if (!DeletePrinter(printer.Get())) {
        failure = LastErrorText();
        return false;
    }
    return true;
}

// Said removed only once the spooler lists it no more.
static UninstallItem RemovePrinter(const std::string &model, const std::string &name)
{
    std::string failure;
    bool deleted = DeleteNamedPrinter(name, failure);
    std::vector<std::string> left;
    if (!PrintersOnDriver(model, left))
        return MakeItem(Kind, name, Outcome::Failed, "the spooler's printers cannot be listed again, " + LastErrorText());
    for (const std::string &printer : left)
        if (EqualNoCase(printer, name))
            return MakeItem(Kind, name, Outcome::Failed, deleted ? "still listed after its deletion" : failure);
    return MakeItem(Kind, name, Outcome::Removed, "");
}

void RemovePrinters(CUninstallRun &run)
{
    const std::string &model = run.Record().Model;
    std::vector<std::string> names;
    if (!PrintersOnDriver(model, names)) {
        run.Tell(MakeItem(Kind, "(the printers on \"" + model + "\")", Outcome::Failed,
                          "the spooler's printers cannot be listed, " + LastErrorText()));
        return;
    }
    for (const std::string &name : names)
        run.Tell(run.WhatIf() ? MakeItem(Kind, name, Outcome::Planned, "on the model's driver")
                              : RemovePrinter(model, name));
}
