#include "report/driver_check.h"
#include "report/file_check.h"
#include "report/printer_check.h"
#include "report/record_check.h"
#include "report/registry_check.h"
#include "report/service_check.h"
#include "report/shortcut_check.h"

ReportItems CheckRecord(const UninstallRecord &record, const CBaseline &baseline)
{
    ReportItems items;
    for (const NamedValue &part : record.Unreadable)
        items.push_back(MakeItem(RecordKind, part.Name, ItemState::Unchecked, part.Text));
    FileCheckContext files;
    files.Spooler = ReadSpoolerFiles(record.Model);
    files.Renames = ReadPendingRenames();
    files.Baseline = &baseline;
    files.RecordedFiles = &record.Files;
    CheckDriverAndModelValues(record, files.Spooler.Driver, items);
    for (const NamedValue &file : record.Files)
        items.push_back(CheckRecordedFile(file.Name, files));
    for (const NamedValue &line : record.Registry)
        items.push_back(CheckRegistryLine(line.Name, record.Files));
    for (const NamedValue &service : record.Services)
        items.push_back(CheckService(service.Name, baseline));
    for (const NamedValue &line : record.Shortcuts)
        items.push_back(CheckShortcutLine(line.Name));
    for (const NamedValue &library : record.Unregister)
        items.push_back(CheckRegisteredLibrary(library.Name, library.Text, files));
    CheckPrintersOfModel(record.Model, baseline, items);
    SortItems(items);
    return items;
}

ReportTally TallyItems(const ReportItems &items)
{
    ReportTally tally;
    for (const ReportItem &item : items) {
        ++tally.Items;
        tally.Incomplete = tally.Incomplete || item.Kind == RecordKind;
        switch (item.State) {
        case ItemState::Held: ++tally.Held; break;
        case ItemState::Drifted: ++tally.Drifted; break;
        case ItemState::Pending: ++tally.Pending; break;
        case ItemState::Unchecked: ++tally.Unchecked; break;
        }
    }
    return tally;
}
