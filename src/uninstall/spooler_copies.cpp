#include "uninstall/spooler_copies.h"

#include <set>

#include "record/directory_sources.h"
#include "record/text_compare.h"

std::vector<UnrecordedFile> SpoolerCopies(const UninstallRecord &record, const char *environment,
                                          const SpoolerList<DRIVER_INFO_3A> &drivers)
{
    std::vector<UnrecordedFile> copies;
    std::string directory = PrinterDriverDirectory(environment);
    std::set<std::string> recorded, seen;
    for (const NamedValue &file : record.Files)
        recorded.insert(LowerCase(file.Name));
    for (const DRIVER_INFO_3A &driver : drivers) {
        if (directory.empty() || !EqualNoCase(SpoolerText(driver.pName), record.Model))
            continue;
        for (const std::string &file : DriverFiles(driver)) {
            std::string source = directory + FileNameOf(file);
            if (!recorded.count(LowerCase(file)) && recorded.count(LowerCase(source)) &&
                seen.insert(LowerCase(file)).second)
                copies.push_back(UnrecordedFile{file, "the spooler's copy of " + source});
        }
    }
    return copies;
}
