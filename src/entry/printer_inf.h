// The install object: one per call of Repair, holding the loaded INF and the
// driver fields that the stages share.
#ifndef TOVREL_ENTRY_PRINTER_INF_H
#define TOVREL_ENTRY_PRINTER_INF_H

#include <list>
#include <map>

#include "inf/bounded_string.h"
#include "files/directory_ids.h"
#include "files/target_directories.h"
#include "inf/inf_file.h"

class CFileSpec;
class CCabinetExtractor;
class CWorkDirectory;
struct CStagedFile;

typedef std::list<CBoundedString> CDestinationList;
typedef std::map<CBoundedString, CDestinationList, CBoundedStringLess> CDestinationDirMap;

class CPrinterInf : public CInfFile {
public:
    CPrinterInf();
    virtual ~CPrinterInf();

    int Install(const char *infPath, const char *manufacturer, const char *driverName,
                const char *printerName, int *reboot, const char *deviceKey);

    int Open(const char *path);
    int ReadDeviceSection(const char *manufacturer, const char *model, const char *printerName);
    int IsRebootRequired() const { return RebootRequired ? 1 : 0; }

    // Discovery, before Open: an INF that offers the model, each candidate
    // read once, whole, as the profile calls read it; 1 when found or
    // accepted.
    int FindInf(const char *printerName, char *inf, int infSize, char *manufacturer, int manufacturerSize,
                char *model, int modelSize);
    int MatchInf(CBoundedString inf, CBoundedString model, CBoundedString &manufacturer);
    // The device installer's key on the 9x family; each output holds 260 bytes.
    static int ReadDeviceKey(CBoundedString keyPath, char *deviceClass, char *model, char *hardwareId,
                             char *manufacturer, char *modelValue, char *portName);

    // The spooler stages, in the order Install runs them.
    int InstallPrintProcessor();
    int InstallMonitor();
    int InstallDriver();
    int InstallPrinter(const char *port);
    // The two halves of InstallDriver: bring the spooler's records of Model
    // up to date (1 if it has any), or add a new driver that depends on the
    // files named.
    int UpdateInstalledDrivers();
    int AddNewDriver(const CDestinationList &dependentFiles);

    // Adds one value to the model's uninstall record, below subkey if one is
    // given; it neither fails nor reports.
    void LogUninstall(const char *subkey, const char *name, const char *data);
    int InstallFile(const char *source, const char *target);
    int CollectCopyFiles(std::list<CBoundedString> *names, std::list<CBoundedString> *paths);
    int CopyFiles();
    void ReplaceIfNewer(const char *source, const char *target, CStagedFile &staged);
    void ReplaceBusyFile(const CStagedFile &staged, const char *target);
    void ScheduleRenameAtRestart(const char *target);
    void InstallCabinet(const char *name, CWorkDirectory &work, CCabinetExtractor &extractor);

    // The INF directory ids, resolved when the file is opened: those the INF
    // can name at once, the others on their first lookup.
    int BuildDirectoryIds();
    int FindDirectoryId(int id, char *out);
    int FindDirectoryIdText(const char *id, char *out);

    // Where the files of a section or cabinet go, from "DestinationDirs" and
    // "DestinationDirs.CAB".
    int ReadDestinationDirs();
    int FindDestinationEntries(CBoundedString name, CDestinationList *out);
    int FindDestinations(CBoundedString name, CDestinationList *out);

    // The registration stages. Each walks its section item by item and goes
    // on whatever a call gave; Install reads none of their results.
    int RegisterFiles();
    int AddRegistry();
    int AddProgramGroup();
    int InstallServices();

    bool RebootRequired;
    CBoundedString DriverFile;
    CBoundedString DataFile;
    CBoundedString ConfigFile;
    CBoundedString HelpFile;
    CBoundedString PrintProcessorName;
    CBoundedString PrintProcessorFile;
    CBoundedString MonitorFile;
    CBoundedString MonitorName;
    CBoundedString DefaultDataType;
    CBoundedString DeviceSection;
    CBoundedString InstallSection;
    CBoundedString DataSection;
    CBoundedString Manufacturer;
    CBoundedString Model;
    CBoundedString PnpId;
    CBoundedString PrinterName;
    CBoundedString AddRegSections;
    CBoundedString ProgramGroupSections;
    CDirectoryIdMap DirectoryIds;
    CDestinationDirMap DestinationDirs;
    // The directories this run installs into, as it found them.
    CTargetDirectories TargetDirectories;
};

// Asks the sibling tools of the product family to quit before files change
// under them; each SendMessage waits for that tool's answer.
void CloseSiblingWindows();

#endif
