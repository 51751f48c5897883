#include <windows.h>

#include <vector>

#include "entry/printer_inf.h"
#include "files/cabinet.h"
#include "files/copy_engine.h"
#include "files/file_spec.h"
#include "files/work_directory.h"

void SortUnique(CBoundedStringList &list)
{
    list.sort(CBoundedStringLess());  // std::list::sort is stable
    CBoundedStringList::iterator previous = list.begin();
    if (previous == list.end())
        return;
    for (CBoundedStringList::iterator it = std::next(previous); it != list.end();) {
        if (previous->Equals(it->Text)) {
            it = list.erase(it);
        } else {
            previous = it;
            ++it;
        }
    }
}

namespace {

// A path that does not fit names no file of the INF's: it is left out, not
// recorded in a shorter form.
void AddPath(CFileSpec &spec, CBoundedStringList &paths)
{
    if (spec.Fits())
        paths.push_back(CBoundedString(spec.FullPath()));
}

// One destination entry of a cabinet ("id" or "id,subdirectory"), worked
// out once for all its files. Ready once its directory is known to exist:
// from then on it is not looked at again for this cabinet. A directory that
// could not be made is looked at again for the next file, which may find it
// made by an entry served in between. An entry whose id names no directory
// gets nothing, on disk or on record.
struct CCabinetDestination {
    CFileSpec Directory;
    bool Ready;
    bool Named;
};

CCabinetDestination PrepareDestination(CPrinterInf &printer, const CBoundedString &entry)
{
    CCabinetDestination destination;
    destination.Directory.Resolve(FileSpecEmpty);
    destination.Ready = false;
    CBoundedString copy(entry);
    char *subdirectory = NextToken(copy, ',');
    CBoundedString directory;
    destination.Named = printer.FindDirectoryIdText(copy, directory) != 0;
    destination.Directory.SetDirectory(directory);
    if (subdirectory && *subdirectory)
        destination.Directory.AppendDirectory(subdirectory);
    return destination;
}

// One extracted file to one destination. A target that does not fit is
// refused before anything is made for it.
void InstallExtractedFile(CPrinterInf &printer, CCabinetDestination &destination, CFileSpec &source,
                          const char *file)
{
    CFileSpec target;
    target.Resolve(FileSpecEmpty);
    CBoundedString targetDirectory(destination.Directory.DirectoryPath());
    target.SetDirectory(targetDirectory);
    target.SetFileName(file);
    if (!destination.Named || !destination.Directory.Fits() || !target.Fits() || !source.Fits())
        return;
    if (!destination.Ready)
        destination.Ready = destination.Directory.DirectoryExists() ||
                            CreateDirectoryA(destination.Directory.DirectoryPath(), NULL);
    CBoundedString sourcePath(source.FullPath());
    CBoundedString targetPath(target.FullPath());
    printer.InstallFile(sourcePath, targetPath);
}

}  // namespace

namespace {

const char *const DefaultDestDir = "DefaultDestDir";

// A file named on its own, with "@": in each default destination. Its own
// line in "DestinationDirs", if any, is not consulted.
void CollectSingleFile(CPrinterInf &printer, const char *file, CBoundedStringList &paths)
{
    CDestinationList directories;
    printer.FindDestinations(DefaultDestDir, &directories);
    CFileSpec spec;
    spec.Resolve(FileSpecEmpty);
    for (const CBoundedString &directory : directories) {
        spec.SetDirectory(directory);
        spec.SetFileName(file);
        AddPath(spec, paths);
    }
}

// Every line of a file section, in each of the section's own destinations
// or, when it has none, in each default one.
void CollectSectionFiles(CPrinterInf &printer, const char *name, CBoundedStringList &paths)
{
    CInfSection section;
    if (!printer.FindSection(name, section))
        return;
    CDestinationList directories;
    printer.FindDestinations(name, &directories);
    if (directories.empty())
        printer.FindDestinations(DefaultDestDir, &directories);
    CFileSpec spec;
    spec.Resolve(FileSpecEmpty);
    for (const CBoundedString &directory : directories) {
        spec.SetDirectory(directory);
        for (const CInfKey &line : section->second) {
            if (line.Cut)
                continue;
            spec.SetFileName(line.Name);
            AddPath(spec, paths);
        }
    }
}

// Sorts a list that was asked for and drops its repeats; 1 when it ends
// non-empty.
int FinishList(CBoundedStringList *list)
{
    if (!list)
        return 0;
    SortUnique(*list);
    return list->empty() ? 0 : 1;
}

}  // namespace

int CPrinterInf::CollectCopyFiles(CBoundedStringList *names, CBoundedStringList *paths)
{
    if (!names && !paths)
        return 0;
    CBoundedString value;
    GetValue(InstallSection, "CopyFiles", value, "");

    char *current = value;
    while (current && *current) {
        char *next = NextToken(current, ',');
        CBoundedString element(StripChar(current, ' '));
        // "@" names a single file, anything else a section of files.
        bool single = element.Text[0] == '@';
        if (single)
            CopyBounded(element.Text, element.Text + 1, sizeof element.Text);
        if (names)
            names->push_back(element);
        if (paths && single)
            CollectSingleFile(*this, element, *paths);
        else if (paths)
            CollectSectionFiles(*this, element, *paths);
        current = next;
    }
    int filled = FinishList(names);
    filled |= FinishList(paths);
    return filled;
}

int CPrinterInf::CopyFiles()
{
    // What the destinations hold is looked at afresh by each run of the stage.
    TargetDirectories = CTargetDirectories();
    CWorkDirectory work;
    CCabinetExtractor extractor;
    try {
        CBoundedStringList paths;
        if (CollectCopyFiles(NULL, &paths))
            for (const CBoundedString &path : paths)
                LogUninstall("files", path, "1");

        CBoundedString cabinets;
        if (!GetValue(InstallSection, "CopyCabs", cabinets, ""))
            throw "no CopyCabs= key";

        // Each cabinet is extracted, installed and drained before the
        // next; an empty element ends the walk and leaves later ones
        // alone, while one of blanks only names no cabinet and is passed.
        for (char *element = cabinets; element;) {
            char *next = NextToken(element, ',');
            if (!*element)
                break;
            if (*StripChar(element, ' '))
                InstallCabinet(element, work, extractor);
            element = next;
        }
    } catch (const char *) {
        return 0;
    }
    return 1;
}

void CPrinterInf::InstallCabinet(const char *name, CWorkDirectory &work, CCabinetExtractor &extractor)
{
    // Cabinets are looked for in the printer driver directory only.
    CFileSpec cabinet;
    cabinet.Resolve(FileSpecPrinterDrivers);
    cabinet.SetFileName(name);
    if (!cabinet.FileExists())
        return;
    CDestinationList entries;
    if (!FindDestinationEntries(cabinet.BaseName(), &entries) || entries.empty())
        return;
    // Without a directory of the run's own, a cabinet is refused as one
    // that cannot be opened.
    if (!work.IsReady())
        return;

    CBoundedString workDirectory(work.Path().c_str());
    extractor.SetDestination(workDirectory);
    CBoundedString cabinetPath(cabinet.FullPath());
    extractor.Extract(cabinetPath, 1);

    std::vector<CCabinetDestination> destinations;
    for (const CBoundedString &entry : entries)
        destinations.push_back(PrepareDestination(*this, entry));
    CFileSpec source;
    source.Resolve(FileSpecEmpty);
    char file[CBoundedString::Capacity];
    while (extractor.PopExtractedName(file)) {
        source.SetDirectory(workDirectory);
        source.SetFileName(file);
        for (CCabinetDestination &destination : destinations)
            InstallExtractedFile(*this, destination, source, file);
    }
    // The next cabinet may hold files of the same names.
    extractor.RemoveMadeFiles();
}
