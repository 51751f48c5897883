#include "record/text_compare.h"
#include "report/baseline_fields.h"
#include "report/printer_check.h"
#include "report/printer_facts.h"

static const char Kind[] = "printer";

static const PrinterFacts *FindPrinter(const std::vector<PrinterFacts> &printers, const std::string &name)
{
    for (const PrinterFacts &printer : printers)
        if (EqualNoCase(printer.Name, name))
            return &printer;
    return nullptr;
}

// A printer that the baseline names: still there, on the model's driver,
// on its port, and marked.
static ReportItem AsAtBaseline(const BaselineEntry &entry, const std::vector<PrinterFacts> &printers)
{
    PrinterFacts was;
    if (entry.State != EntryState::Found || !PrinterOfFields(entry.Fields, was))
        return MakeItem(Kind, entry.Name, ItemState::Unchecked, "its baseline entry is unreadable");
    const PrinterFacts *now = FindPrinter(printers, entry.Name);
    if (!now)
        return MakeItem(Kind, entry.Name, ItemState::Drifted, "gone; it was on port " + was.Port);
    std::string mark;
    bool marked = ReadPrinterMark(now->Name, mark);
    std::string detail = "port " + now->Port + ", " + mark;
    std::string changes;
    if (!EqualNoCase(now->Driver, was.Driver))
        changes += "driver \"" + now->Driver + "\", was \"" + was.Driver + "\"";
    if (!EqualNoCase(now->Port, was.Port))
        changes += (changes.empty() ? "port was " : ", port was ") + was.Port;
    if (!changes.empty())
        return MakeItem(Kind, now->Name, ItemState::Drifted, detail + "; since the baseline: " + changes);
    if (!marked)
        return MakeItem(Kind, now->Name, ItemState::Drifted, detail);
    return MakeItem(Kind, now->Name, ItemState::Held, detail + ", as at the baseline");
}

// A printer of the model that the baseline does not name, or any printer
// of it when there is no baseline: only its mark can be judged.
static ReportItem MarkOnly(const PrinterFacts &printer, const char *why)
{
    std::string mark;
    bool marked = ReadPrinterMark(printer.Name, mark);
    return MakeItem(Kind, printer.Name, marked ? ItemState::Unchecked : ItemState::Drifted,
                    "port " + printer.Port + ", " + mark + why);
}

static void CheckAgainstBaseline(const std::vector<PrinterFacts> &printers, const std::string &model,
                                 const CBaseline &baseline, ReportItems &items)
{
    std::vector<BaselineEntry> entries;
    LONG error = ERROR_SUCCESS;
    if (!baseline.Entries(BaselinePrinters, entries, error))
        items.push_back(MakeItem(RecordKind, "baseline printers", ItemState::Unchecked,
                                 "cannot be listed, error " + std::to_string(error)));
    for (const BaselineEntry &entry : entries)
        items.push_back(AsAtBaseline(entry, printers));
    for (const PrinterFacts &printer : PrintersOfModel(printers, model)) {
        bool named = false;
        for (const BaselineEntry &entry : entries)
            named = named || EqualNoCase(entry.Name, printer.Name);
        if (!named)
            items.push_back(MarkOnly(printer, "; not in the baseline"));
    }
}

void CheckPrintersOfModel(const std::string &model, const CBaseline &baseline, ReportItems &items)
{
    std::vector<PrinterFacts> printers;
    if (!ReadLocalPrinters(printers)) {
        items.push_back(MakeItem(Kind, "(spooler)", ItemState::Unchecked, "the printers cannot be listed"));
        return;
    }
    size_t before = items.size();
    if (baseline.Exists())
        CheckAgainstBaseline(printers, model, baseline, items);
    else
        for (const PrinterFacts &printer : PrintersOfModel(printers, model))
            items.push_back(MarkOnly(printer, "; name and port not compared: no baseline"));
    if (items.size() == before)
        items.push_back(MakeItem(Kind, "(none)", ItemState::Drifted, "no printer uses the driver"));
}
