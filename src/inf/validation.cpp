#include <windows.h>

#include "entry/printer_inf.h"
#include "inf/os_version.h"

namespace {

const char VersionSection[] = "Version";
const char PrinterClassGuid[] = "{4D36E979-E325-11CE-BFC1-08002BE10318}";

}  // namespace

int CPrinterInf::Open(const char *path)
{
    try {
        if (!Load(path))
            throw "Unable to open the file";

        // One buffer for every read: cleared first, since a key with an
        // empty value leaves it as it was.
        CBoundedString value;
        if (GetValue(VersionSection, "Class", value, "")) {
            if (value.Differs("Printer"))
                throw "unable to locate Class=Printer in the inf file";
        } else {
            value = CBoundedString();
            if (!GetValue(VersionSection, "ClassGUID", value, ""))
                throw "unable to find class info in the inf file";
            if (value.Differs(PrinterClassGuid))
                throw "unable to locate ClassGUID=<printergiud> in the inf file";
        }

        value = CBoundedString();
        if (!GetValue(VersionSection, "Signature", value, ""))
            throw "no [version] section";
        StripChar(value, '"');
        COsVersion os;
        if (value.Equals("$Windows 95$")) {
            if (os.Family != COsVersion::FamilyWindows9x)
                throw "this inf is for Win9x only.";
        } else if (value.Equals("$Windows NT$")) {
            if (os.Family != COsVersion::FamilyWindowsNt)
                throw "this inf is for WinNT only.";
        } else if (value.Differs("$Chicago$")) {
            throw "this inf file is for an unknown OS";
        }

        if (GetKeyCount("Manufacturer") == 0)
            throw "unable to locate [Manufacturer] section in the INF file";

        BuildDirectoryIds();
        if (!ReadDestinationDirs())
            throw "no destination directories";
    } catch (const char *message) {
        CBoundedString line("\nCPrinterInf::Open,failure,");
        line.Append(message);
        OutputDebugStringA(line);
        return 0;
    }
    return 1;
}
