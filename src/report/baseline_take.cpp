#include "record/text_compare.h"
#include "report/baseline_fields.h"
#include "report/baseline_take.h"
#include "report/baseline_write.h"
#include "report/file_location.h"

static bool Failed(const std::string &what, LONG error, std::string &failure)
{
    failure = what + ", error " + std::to_string(error);
    return false;
}

// Each recorded file and registered library that is there, under the path
// that the report looks it up by.
static bool AddFiles(const UninstallRecord &record, CBaselineWriter &writer, BaselineTally &tally,
                     std::string &failure)
{
    SpoolerFiles spooler = ReadSpoolerFiles(record.Model);
    std::vector<std::string> paths;
    for (const NamedValue &file : record.Files)
        paths.push_back(file.Name);
    for (const NamedValue &library : record.Unregister) {
        std::string path = LocateLibrary(library.Text);
        bool recorded = false;
        for (const std::string &known : paths)
            recorded = recorded || EqualNoCase(known, path);
        if (!path.empty() && !recorded)
            paths.push_back(path);
    }
    LONG error = ERROR_SUCCESS;
    for (const std::string &path : paths) {
        LocatedFile file = LocateRecordedFile(path, spooler, true);
        if (!file.Facts.Present) {
            ++tally.MissingFiles;
            continue;
        }
        if (!writer.Add(BaselineFiles, path, FileFields(file.Facts), error))
            return Failed("the entry of " + path + " cannot be written", error, failure);
        ++tally.Files;
    }
    return true;
}

static bool AddServices(const UninstallRecord &record, CBaselineWriter &writer, BaselineTally &tally,
                        std::string &failure)
{
    LONG error = ERROR_SUCCESS;
    for (const NamedValue &service : record.Services) {
        ServiceFacts facts = ReadServiceFacts(service.Name);
        if (facts.Outcome != ServiceRead::Read)
            continue;
        if (!writer.Add(BaselineServices, service.Name, ServiceFields(facts), error))
            return Failed("the entry of service " + service.Name + " cannot be written", error, failure);
        ++tally.Services;
    }
    return true;
}

static bool AddPrinters(const UninstallRecord &record, CBaselineWriter &writer, BaselineTally &tally,
                        std::string &failure)
{
    std::vector<PrinterFacts> printers;
    LONG error = ERROR_SUCCESS;
    if (!ReadLocalPrinters(printers))
        return Failed("the spooler's printers cannot be listed", static_cast<LONG>(GetLastError()), failure);
    for (const PrinterFacts &printer : PrintersOfModel(printers, record.Model)) {
        if (!writer.Add(BaselinePrinters, printer.Name, PrinterFields(printer), error))
            return Failed("the entry of printer " + printer.Name + " cannot be written", error, failure);
        ++tally.Printers;
    }
    return true;
}

bool TakeBaseline(const UninstallRecord &record, BaselineTally &tally, std::string &failure)
{
    if (!record.Unreadable.empty()) {
        failure = "the record's " + record.Unreadable[0].Name + " " + record.Unreadable[0].Text;
        return false;
    }
    CBaselineWriter writer;
    LONG error = ERROR_SUCCESS;
    if (!writer.Begin(record.Model, error))
        return Failed(BaselineKeyText(record.Model) + " cannot be made anew", error, failure);
    bool whole = AddFiles(record, writer, tally, failure) && AddServices(record, writer, tally, failure)
                 && AddPrinters(record, writer, tally, failure);
    // Half a baseline would pass for a whole one.
    if (!whole)
        writer.Abandon(record.Model);
    return whole;
}
