#include "uninstall/registry_removal.h"

#include "record/addreg_line.h"
#include "record/addreg_root_key.h"
#include "record/current_user.h"
#include "record/product_keys.h"
#include "support/handles.h"
#include "uninstall/windows_error.h"

static const char Kind[] = "registry";

static std::string KeyText(const AddRegLine &line)
{
    return line.Root + "\\" + line.Subkey;
}

// A key that holds nothing goes; one that holds a value or a key of any
// other hand stays. A root is never a line's own key.
static std::string RemoveKeyIfEmpty(HKEY root, const AddRegLine &line)
{
    CRegistryHandle key;
    DWORD subkeys = 0, values = 0;
    if (line.Subkey.find_first_not_of('\\') == std::string::npos ||
        RegOpenKeyExA(root, line.Subkey.c_str(), 0, KEY_READ, key.Put()) != ERROR_SUCCESS ||
        RegQueryInfoKeyA(key.Get(), NULL, NULL, NULL, &subkeys, NULL, NULL, &values, NULL, NULL, NULL, NULL) !=
            ERROR_SUCCESS)
        return std::string();
    if (subkeys > 0 || values > 0)
        return "; key " + KeyText(line) + " kept: it holds more";
    key.Reset();
    LONG deleted = RegDeleteKeyA(root, line.Subkey.c_str());
    if (deleted != ERROR_SUCCESS)
        return "; key " + KeyText(line) + " kept: " + ErrorText(deleted);
    return RegOpenKeyExA(root, line.Subkey.c_str(), 0, KEY_READ, key.Put()) == ERROR_FILE_NOT_FOUND
               ? "; key " + KeyText(line) + " removed, empty"
               : "; key " + KeyText(line) + " still there after its deletion";
}

static UninstallItem DeleteLineValue(const std::string &subject, HKEY root, const AddRegLine &line, bool whatIf)
{
    CRegistryHandle key;
    LONG opened = RegOpenKeyExA(root, line.Subkey.c_str(), 0, KEY_QUERY_VALUE | KEY_SET_VALUE, key.Put());
    if (opened == ERROR_FILE_NOT_FOUND)
        return MakeItem(Kind, subject, Outcome::Absent, "no key " + KeyText(line));
    if (opened != ERROR_SUCCESS)
        return MakeItem(Kind, subject, Outcome::Failed, "key " + KeyText(line) + " cannot be opened, " + ErrorText(opened));
    std::string value = "value \"" + line.ValueName + "\" of " + KeyText(line);
    if (RegQueryValueExA(key.Get(), line.ValueName.c_str(), NULL, NULL, NULL, NULL) == ERROR_FILE_NOT_FOUND)
        return MakeItem(Kind, subject, Outcome::Absent, "no " + value);
    if (whatIf)
        return MakeItem(Kind, subject, Outcome::Planned, value);
    LONG deleted = RegDeleteValueA(key.Get(), line.ValueName.c_str());
    if (RegQueryValueExA(key.Get(), line.ValueName.c_str(), NULL, NULL, NULL, NULL) != ERROR_FILE_NOT_FOUND)
        return MakeItem(Kind, subject, Outcome::Failed, value + " stays, " + ErrorText(deleted));
    key.Reset();
    return MakeItem(Kind, subject, Outcome::Removed, value + " deleted" + RemoveKeyIfEmpty(root, line));
}

static UninstallItem RemoveLine(const CUninstallRun &run, const NamedValue &value)
{
    if (!IsTextValue(value))
        return RefusedValueType(Kind, value);
    AddRegLine line = ParseAddRegLine(value.Name);
    if (!line.HasValue)
        return MakeItem(Kind, value.Name, Outcome::Absent, "no value given: the install wrote nothing");
    AddRegRoot rootName = AddRegRootOf(line.Root);
    HKEY root = AddRegRootKey(rootName);
    if (!root)
        return MakeItem(Kind, value.Name, Outcome::Refused, "root \"" + line.Root + "\" is none of HKCR, HKCU, HKLM, HKU");
    std::string by;
    Claim claim = run.Claims().Of(ClaimKind::RegistryValue, RegistryValueKey(line), by);
    UninstallItem item = claim != Claim::Free
                             ? MakeItem(Kind, value.Name, claim == Claim::Claimed ? Outcome::Shared : Outcome::Failed, by)
                             : DeleteLineValue(value.Name, root, line, run.WhatIf());
    if (rootName == AddRegRoot::CurrentUser)
        item.Detail += InUserHive();
    return item;
}

void RemoveRegistryLines(CUninstallRun &run)
{
    for (const NamedValue &value : run.Record().Registry)
        run.Settle(RemoveLine(run, value), RecordRegistry, value.Name);
}
