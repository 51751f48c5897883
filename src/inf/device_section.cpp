#include <windows.h>

#include <cstring>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "inf/device_section.h"
#include "inf/os_version.h"

const char *InstallSectionSuffix(int family)
{
    switch (family) {
    case COsVersion::FamilyWindowsNt:
        return ".NTx86";
    case COsVersion::FamilyWindows9x:
        return ".Win";
    default:
        return "";
    }
}

namespace {

bool IsMissing(const char *text) { return !text || !*text; }

// Every read starts from empty text, so that a key that is absent or has an
// empty value reads as empty. An absent key throws `missing` if one is given.
CBoundedString ReadKey(CPrinterInf &inf, const char *section, const char *key, const char *missing = nullptr)
{
    CBoundedString value;
    if (!inf.GetValue(section, key, value, "") && missing)
        throw missing;
    return value;
}

// Manufacturer section, then the manufacturer's device section: the model's
// line names its install section and, behind a comma, its PnP id.
void ReadModelLine(CPrinterInf &inf)
{
    CBoundedString devices = ReadKey(inf, "Manufacturer", inf.Manufacturer, "unable to find device section");
    inf.DeviceSection = devices.IsEmpty() ? inf.Manufacturer : devices;

    CBoundedString line =
        ReadKey(inf, inf.DeviceSection, inf.Model, "unable to find driver name in device section");
    char *pnpId = NextToken(line, ',');
    inf.PnpId = CBoundedString(pnpId);
    inf.InstallSection = line;
    inf.LogUninstall(NULL, "PnP ID", inf.PnpId);
}

// The variant for this system wins where it has a line; an empty one counts
// as absent.
void SelectInstallSection(CPrinterInf &inf)
{
    CBoundedString decorated(inf.InstallSection);
    decorated.Append(InstallSectionSuffix(COsVersion().Family));
    if (inf.GetKeyCount(decorated) > 0)
        inf.InstallSection = decorated;
}

void ReadInstallSection(CPrinterInf &inf)
{
    inf.AddRegSections = ReadKey(inf, inf.InstallSection, "AddReg");
    inf.ProgramGroupSections = ReadKey(inf, inf.InstallSection, "AddProgramGroup");
    inf.DataSection = ReadKey(inf, inf.InstallSection, "DataSection", "no printer data section!");
}

// The four files every driver has; each is recorded as soon as it is read.
void ReadDriverFiles(CPrinterInf &inf)
{
    const struct {
        const char *Key;
        CBoundedString *Field;
        const char *Missing;
        const char *LogName;
    } files[] = {
        {"DriverFile", &inf.DriverFile, "no driver file", "Driver File"},
        {"DataFile", &inf.DataFile, "no data file", "Data File"},
        {"ConfigFile", &inf.ConfigFile, "no config file", "Config File"},
        {"HelpFile", &inf.HelpFile, "no help file", "Help File"},
    };
    for (const auto &file : files) {
        *file.Field = ReadKey(inf, inf.DataSection, file.Key, file.Missing);
        inf.LogUninstall(NULL, file.LogName, *file.Field);
    }
}

// The optional parts: print processor and language monitor, each a name and
// a file in one value, name first; then the default data type.
void ReadOptionalParts(CPrinterInf &inf)
{
    const struct {
        const char *Key;
        CBoundedString *Name;
        const char *NameLog;
        CBoundedString *File;
        const char *FileLog;
    } pairs[] = {
        {"PrintProcessor", &inf.PrintProcessorName, "Print Processor Name", &inf.PrintProcessorFile,
         "Print Processor File"},
        {"LanguageMonitor", &inf.MonitorName, "Language Monitor Name", &inf.MonitorFile,
         "Language Monitor File"},
    };
    for (const auto &pair : pairs) {
        CBoundedString value = ReadKey(inf, inf.DataSection, pair.Key);
        // Cut at the first comma; each part loses its quotes, not its blanks.
        char *file = NextToken(value, ',');
        *pair.Name = CBoundedString(StripChar(value, '"'));
        *pair.File = CBoundedString(file ? StripChar(file, '"') : "");
        inf.LogUninstall(NULL, pair.NameLog, *pair.Name);
        inf.LogUninstall(NULL, pair.FileLog, *pair.File);
    }
    inf.DefaultDataType = ReadKey(inf, inf.DataSection, "DefaultDataType");
    inf.LogUninstall(NULL, "Default Data Type", inf.DefaultDataType);
}

// The model's own folder below the web printers folder.
void SetModelWebDirectory(CPrinterInf &inf)
{
    CFileSpec folder;
    folder.Resolve(FileSpecWebPrinters);
    folder.AppendDirectory(inf.Manufacturer);
    folder.AppendDirectory(inf.Model);
    inf.DirectoryIds[DIRID_PRINTER_WEB] = CBoundedString(folder.FullPath());
}

const char ModelFailurePrefix[] = "\nCPrinterInf::ReadDeviceSection,failure,";

// The model names its own key of the uninstall record. A name with a
// backslash would name a key below another model's, and one of blanks alone
// a key of no model; and any of the three names, cut to fit, would name
// another model, maker or printer. Each is refused before anything is
// recorded.
void CheckNames(const char *manufacturer, const char *model, const char *printerName)
{
    CBoundedString trimmed(model);
    StripChar(trimmed, ' ');
    const char *refusal = NULL;
    if (std::strchr(model, '\\'))
        refusal = "the model name holds a backslash, which would name another model's record";
    else if (trimmed.IsEmpty())
        refusal = "the model name is empty once its blanks are gone";
    else if (std::strlen(manufacturer) > CBoundedString::MaxLength || std::strlen(model) > CBoundedString::MaxLength ||
             std::strlen(printerName) > CBoundedString::MaxLength)
        refusal = "a name is longer than 259 characters, and cut it would name another";
    if (!refusal)
        return;
    CBoundedString line(ModelFailurePrefix);
    line.Append(refusal);
    OutputDebugStringA(line);
    throw refusal;
}

}  // namespace

int CPrinterInf::ReadDeviceSection(const char *manufacturer, const char *model, const char *printerName)
{
    try {
        if (IsMissing(manufacturer) || IsMissing(model) || IsMissing(printerName))
            throw "bad params";
        CheckNames(manufacturer, model, printerName);
        Manufacturer = CBoundedString(manufacturer);
        Model = CBoundedString(model);
        PrinterName = CBoundedString(printerName);
        ReadModelLine(*this);
        SelectInstallSection(*this);
        ReadInstallSection(*this);
        ReadDriverFiles(*this);
        ReadOptionalParts(*this);
        SetModelWebDirectory(*this);
    } catch (const char *) {
        return 0;
    }
    return 1;
}
