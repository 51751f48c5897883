#include "registration/registry_section.h"

#include <cstdlib>
#include <cstring>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "files/uninstall_data.h"
#include "registration/reg_key.h"

namespace {

const DWORD AddRegTypeMask = 0xFFFF0001;

// Only the first 4086 bytes of names are looked at: enough for the files of
// one model, and the uninstall key holds nothing else.
const DWORD InstalledNamesSize = 4086;

// Swaps a bare file name for the full path under which the copy stage put
// that file on record. The value stays as it is when nothing matches.
void FindInstalledFile(const CBoundedString &model, CBoundedString &value)
{
    CBoundedString path(UninstallRoot);
    path.Append(model);
    path.Append("\\");
    path.Append(UninstallFiles);
    CRegKey files;
    if (!files.Open(HKEY_LOCAL_MACHINE, path))
        return;
    char names[InstalledNamesSize + 1];
    DWORD size = InstalledNamesSize, count = 0;
    if (!files.EnumValueNames(names, &size, &count))
        return;
    CFileSpec spec;
    for (const char *name = names; *name; name += std::strlen(name) + 1) {
        spec.Resolve(FileSpecEmpty);
        spec.SetPath(name);
        if (CompareNoCase(spec.FileName(), value) == 0) {
            value = CBoundedString(name);
            return;
        }
    }
}

}  // namespace

unsigned long ReadAddRegFlags(const char *text)
{
    if (text[0] == '0' && text[1] == 'x')
        return std::strtoul(text, NULL, 16);
    return static_cast<unsigned long>(std::atol(text));
}

DWORD AddRegValueType(unsigned long flags)
{
    switch (flags & AddRegTypeMask) {
    case 0x00000000:
        return REG_SZ;
    case 0x00000001:
        return REG_BINARY;
    case 0x00010000:
        return REG_MULTI_SZ;
    case 0x00010001:
        return REG_DWORD;
    case 0x00020000:
        return REG_EXPAND_SZ;
    default:
        return REG_NONE;
    }
}

bool ReadAddRegRoot(const char *text, HKEY *root)
{
    static const struct {
        const char *Keyword;
        HKEY Root;
    } Roots[] = {
        {"HKCR", HKEY_CLASSES_ROOT},
        {"HKCU", HKEY_CURRENT_USER},
        {"HKLM", HKEY_LOCAL_MACHINE},
        {"HKU", HKEY_USERS},
    };
    for (const auto &entry : Roots)
        if (CompareNoCase(text, entry.Keyword) == 0) {
            *root = entry.Root;
            return true;
        }
    return false;
}

int CPrinterInf::AddRegistry()
{
    CInfSection section;
    if (!FindSection(AddRegSections, section) || section->second.empty())
        return 0;

    // A line whose root is no keyword writes below the root of the line
    // before it.
    HKEY root = NULL;
    CRegKey key;
    for (const CInfKey &entry : section->second) {
        // A line that does not fit is no line: nothing written or recorded.
        CBoundedString line;
        if (!JoinLine(entry, line))
            continue;
        LogUninstall(UninstallRegistry, line, "1");

        char *rootField = line.Text;
        char *subkey = NextToken(rootField, ',');
        char *valueName = NextToken(subkey, ',');
        char *flagsField = NextToken(valueName, ',');
        char *valueField = NextToken(flagsField, ',');
        if (!valueField || !*valueField)
            continue;

        ReadAddRegRoot(rootField, &root);
        unsigned long flags = ReadAddRegFlags(flagsField);
        DWORD type = AddRegValueType(flags);
        CBoundedString value(valueField);
        if (flags & AddRegInstalledFileFlag)
            FindInstalledFile(Model, value);

        key.Create(root, subkey);
        if (key.IsOpen())
            key.Status = RegSetValueExA(key.Handle(), valueName, 0, type,
                                        reinterpret_cast<const BYTE *>(value.Text),
                                        static_cast<DWORD>(value.Length()));
    }
    key.Key.Reset();
    return 1;
}
