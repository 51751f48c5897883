#include <windows.h>

#include "record/directory_sources.h"
#include "record/text_compare.h"
#include "report/file_location.h"

SpoolerFiles ReadSpoolerFiles(const std::string &model)
{
    SpoolerFiles spooler;
    spooler.Driver = ReadDriverRecord(model);
    spooler.DriverDirectory = PrinterDriverDirectory(spooler.Driver.Environment.c_str());
    return spooler;
}

// The driver's files are named to the spooler in the driver directory, and
// the spooler takes them into its version directory: a driver file missing
// from the first stands in the second.
static std::string SpoolerCopy(const std::string &path, const SpoolerFiles &spooler)
{
    std::string directory = path.substr(0, path.find_last_of('\\') + 1);
    if (spooler.DriverDirectory.empty() || !EqualNoCase(directory, spooler.DriverDirectory))
        return std::string();
    std::string copy = SpoolerCopyOf(spooler.Driver, FileNameOf(path));
    return EqualNoCase(copy, path) ? std::string() : copy;
}

LocatedFile LocateRecordedFile(const std::string &path, const SpoolerFiles &spooler, bool withContent)
{
    LocatedFile file;
    file.Path = path;
    file.Facts = ReadFileFacts(path, withContent);
    if (file.Facts.Present)
        return file;
    std::string copy = SpoolerCopy(path, spooler);
    if (copy.empty())
        return file;
    FileFacts facts = ReadFileFacts(copy, withContent);
    if (facts.Present) {
        file.Path = copy;
        file.TakenBySpooler = true;
        file.Facts = facts;
    }
    return file;
}

std::string LocateLibrary(const std::string &loadedFrom)
{
    // A library that the system's own search found is recorded by its bare
    // name: look where that search looks for an installed library.
    if (loadedFrom.find('\\') != std::string::npos)
        return loadedFrom;
    char found[MAX_PATH];
    char *filePart = NULL;
    DWORD length = SearchPathA(NULL, loadedFrom.c_str(), NULL, MAX_PATH, found, &filePart);
    return length == 0 || length >= MAX_PATH ? std::string() : std::string(found);
}

std::string LocatedText(const LocatedFile &file)
{
    std::string presence = PresenceText(file.Facts);
    return file.TakenBySpooler ? "taken by the spooler: " + file.Path + " " + presence : presence;
}
