#include "report/driver_check.h"
#include "report/file_check.h"
#include "report/pending_renames.h"
#include "report/printer_check.h"
#include "report/record_check.h"
#include "report/registry_check.h"
#include "report/service_check.h"
#include "report/shortcut_check.h"

ReportItems CheckRecord(const UninstallRecord &record)
{
    ReportItems items;
    FileCheckContext files;
    files.Driver = ReadDriverRecord(record.Model);
    files.DriverDirectory = DriverDirectory(files.Driver.Environment);
    files.Renames = ReadPendingRenames();
    CheckDriverAndModelValues(record, files.Driver, items);
    for (const NamedValue &file : record.Files)
        items.push_back(CheckRecordedFile(file.Name, files));
    for (const NamedValue &line : record.Registry)
        items.push_back(CheckRegistryLine(line.Name, record.Files));
    for (const NamedValue &service : record.Services)
        items.push_back(CheckService(service.Name));
    for (const NamedValue &line : record.Shortcuts)
        items.push_back(CheckShortcutLine(line.Name));
    for (const NamedValue &library : record.Unregister)
        items.push_back(CheckRegisteredLibrary(library.Name, library.Text));
    CheckPrintersOfModel(record.Model, items);
    SortItems(items);
    return items;
}

ReportTally TallyItems(const ReportItems &items)
{
    ReportTally tally;
    for (const ReportItem &item : items) {
        ++tally.Items;
        switch (item.State) {
        case ItemState::Held: ++tally.Held; break;
        case ItemState::Drifted: ++tally.Drifted; break;
        case ItemState::Pending: ++tally.Pending; break;
        case ItemState::Unchecked: ++tally.Unchecked; break;
        }
    }
    return tally;
}
