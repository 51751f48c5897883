#include "uninstall/uninstall_steps.h"

#include <algorithm>

#include "record/text_compare.h"
#include "uninstall/file_removal.h"
#include "uninstall/library_unregister.h"
#include "uninstall/record_removal.h"
#include "uninstall/registry_removal.h"
#include "uninstall/service_removal.h"
#include "uninstall/shortcut_removal.h"
#include "uninstall/spooler_removal.h"

void SortRecord(UninstallRecord &record)
{
    auto byName = [](const NamedValue &a, const NamedValue &b) { return CompareNoCase(a.Name, b.Name) < 0; };
    for (std::vector<NamedValue> *part :
         {&record.Files, &record.Unregister, &record.Services, &record.Registry, &record.Shortcuts})
        std::sort(part->begin(), part->end(), byName);
}

void TakeBack(CUninstallRun &run)
{
    for (const NamedValue &part : run.Record().Unreadable)
        run.Tell(MakeItem("record", part.Name, Outcome::Failed, part.Text));
    RemovePrinters(run);
    RemoveDrivers(run);
    RemoveMonitor(run);
    RemoveProcessor(run);
    RemoveServices(run);
    UnregisterLibraries(run);
    RemoveRegistryLines(run);
    RemoveShortcuts(run);
    RemoveFiles(run);
    RemoveRecord(run);
}

