#include <windows.h>

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

// A two-part value, name first: cut at the first comma, each part unquoted.
void SplitPair(char *value, CBoundedString &name, CBoundedString &file)
{
    char *second = NextToken(value, ',');
    name = CBoundedString(StripChar(value, '"'));
    file = CBoundedString(second ? StripChar(second, '"') : "");
}

}  // namespace

int CPrinterInf::ReadDeviceSection(const char *manufacturer, const char *model, const char *printerName)
{
    try {
        if (!manufacturer || !*manufacturer || !model || !*model || !printerName || !*printerName)
            throw "bad params";
        Manufacturer = CBoundedString(manufacturer);
        Model = CBoundedString(model);
        PrinterName = CBoundedString(printerName);

        // The one work buffer: emptied before each read, so that a key that
        // is absent or empty reads as empty text.
        CBoundedString value;
        if (!GetValue("Manufacturer", Manufacturer, value, ""))
            throw "unable to find device section";
        DeviceSection = value.IsEmpty() ? Manufacturer : value;

        value = CBoundedString();
        if (!GetValue(DeviceSection, Model, value, ""))
            throw "unable to find driver name in device section";
        char *pnpId = NextToken(value, ',');
        PnpId = CBoundedString(pnpId);
        InstallSection = value;
        LogUninstall(NULL, "PnP ID", PnpId);

        CBoundedString decorated(InstallSection);
        decorated.Append(InstallSectionSuffix(COsVersion().Family));
        if (GetKeyCount(decorated) > 0)
            InstallSection = decorated;

        value = CBoundedString();
        GetValue(InstallSection, "AddReg", value, "");
        AddRegSections = value;

        value = CBoundedString();
        GetValue(InstallSection, "AddProgramGroup", value, "");
        ProgramGroupSections = value;

        value = CBoundedString();
        if (!GetValue(InstallSection, "DataSection", value, ""))
            throw "no printer data section!";
        DataSection = value;

        const struct {
            const char *Key;
            CBoundedString *Field;
            const char *Missing;
            const char *LogName;
        } files[] = {
            {"DriverFile", &DriverFile, "no driver file", "Driver File"},
            {"DataFile", &DataFile, "no data file", "Data File"},
            {"ConfigFile", &ConfigFile, "no config file", "Config File"},
            {"HelpFile", &HelpFile, "no help file", "Help File"},
        };
        for (const auto &file : files) {
            value = CBoundedString();
            if (!GetValue(DataSection, file.Key, value, ""))
                throw file.Missing;
            *file.Field = value;
            LogUninstall(NULL, file.LogName, *file.Field);
        }

        value = CBoundedString();
        GetValue(DataSection, "PrintProcessor", value, "");
        SplitPair(value, PrintProcessorName, PrintProcessorFile);
        LogUninstall(NULL, "Print Processor Name", PrintProcessorName);
        LogUninstall(NULL, "Print Processor File", PrintProcessorFile);

        value = CBoundedString();
        GetValue(DataSection, "LanguageMonitor", value, "");
        SplitPair(value, MonitorName, MonitorFile);
        LogUninstall(NULL, "Language Monitor Name", MonitorName);
        LogUninstall(NULL, "Language Monitor File", MonitorFile);

        value = CBoundedString();
        GetValue(DataSection, "DefaultDataType", value, "");
        DefaultDataType = value;
        LogUninstall(NULL, "Default Data Type", DefaultDataType);

        CFileSpec folder;
        folder.Resolve(FileSpecWebPrinters);
        folder.AppendDirectory(Manufacturer);
        folder.AppendDirectory(Model);
        DirectoryIds[ModelWebDirectoryId] = CBoundedString(folder.FullPath());
    } catch (const char *) {
        return 0;
    }
    return 1;
}
