#include <windows.h>

#include "entry/printer_inf.h"
#include "inf/os_version.h"
#include "inf/printer_class.h"

namespace {

const char FailurePrefix[] = "\nCPrinterInf::Open,failure,";

// A value read into fresh text: a key with an empty value leaves the buffer
// as it was. An absent key throws `missing`.
CBoundedString ReadVersionKey(CPrinterInf &inf, const char *key, const char *missing)
{
    CBoundedString value;
    if (!inf.GetValue(VersionSection, key, value, ""))
        throw missing;
    return value;
}

// "Class" decides alone when it is there; only without it is "ClassGUID" read.
void CheckClass(CPrinterInf &inf)
{
    CBoundedString name;
    if (inf.GetValue(VersionSection, VersionClassKey, name, "")) {
        if (!IsPrinterClassName(name))
            throw "unable to locate Class=Printer in the inf file";
        return;
    }
    CBoundedString guid =
        ReadVersionKey(inf, VersionClassGuidKey, "unable to find class info in the inf file");
    if (!IsPrinterClassGuid(guid))
        throw "unable to locate ClassGUID=<printergiud> in the inf file";
}

// The signature names the system family that the INF was written for.
void CheckSignature(CPrinterInf &inf)
{
    CBoundedString signature = ReadVersionKey(inf, "Signature", "no [version] section");
    StripChar(signature, '"');
    COsVersion os;
    if (signature.Equals("$Windows 95$")) {
        if (os.Family != COsVersion::FamilyWindows9x)
            throw "this inf is for Win9x only.";
    } else if (signature.Equals("$Windows NT$")) {
        if (os.Family != COsVersion::FamilyWindowsNt)
            throw "this inf is for WinNT only.";
    } else if (signature.Differs("$Chicago$")) {
        throw "this inf file is for an unknown OS";
    }
}

}  // namespace

int CPrinterInf::Open(const char *path)
{
    try {
        if (!Load(path))
            throw "Unable to open the file";
        CheckClass(*this);
        CheckSignature(*this);
        if (GetKeyCount("Manufacturer") == 0)
            throw "unable to locate [Manufacturer] section in the INF file";
        BuildDirectoryIds();
        if (!ReadDestinationDirs())
            throw "no destination directories";
    } catch (const char *message) {
        CBoundedString line(FailurePrefix);
        line.Append(message);
        OutputDebugStringA(line);
        return 0;
    }
    return 1;
}
