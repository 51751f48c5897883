#include "uninstall/record_removal.h"

#include "record/product_keys.h"
#include "record/text_compare.h"
#include "support/handles.h"
#include "uninstall/windows_error.h"

static const char RecordKind[] = "record";
static const char BaselineKind[] = "baseline";

static bool IsPart(const std::string &subkey, const char *const *parts, int partCount)
{
    for (int i = 0; i < partCount; ++i)
        if (EqualNoCase(subkey, parts[i]))
            return true;
    return false;
}

// A key of the product's own with only the parts it knows below it; a key
// of any other name below it stops the removal before anything goes, since
// nothing here is removed whole without a look at what it holds.
static bool DeleteKeyAndParts(const std::string &path, const char *const *parts, int partCount, std::string &failure)
{
    CRegistryHandle key;
    std::vector<std::string> subkeys;
    LONG error = RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.Put());
    if (error != ERROR_SUCCESS || !ListSubkeys(key.Get(), subkeys, &error)) {
        failure = "cannot be listed, " + ErrorText(error);
        return false;
    }
    for (const std::string &subkey : subkeys)
        if (!IsPart(subkey, parts, partCount)) {
            failure = "holds \"" + subkey + "\", which is none of its parts";
            return false;
        }
    for (const std::string &subkey : subkeys) {
        LONG deleted = RegDeleteKeyA(key.Get(), subkey.c_str());
        if (deleted != ERROR_SUCCESS) {
            failure = subkey + " cannot be deleted, " + ErrorText(deleted);
            return false;
        }
    }
    key.Reset();
    LONG deleted = RegDeleteKeyA(HKEY_LOCAL_MACHINE, path.c_str());
    failure = deleted == ERROR_SUCCESS ? "still there after its deletion" : ErrorText(deleted);
    return RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_FILE_NOT_FOUND;
}

template <int PartCount>
static UninstallItem RemoveKey(const char *kind, const std::string &path, const char *const (&parts)[PartCount])
{
    std::string failure;
    if (!DeleteKeyAndParts(path, parts, PartCount, failure))
        return MakeItem(kind, MachineKeyText(path), Outcome::Failed, failure);
    return MakeItem(kind, MachineKeyText(path), Outcome::Removed, "");
}

static bool KeyExists(const std::string &path)
{
    CRegistryHandle key;
    return RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

static const char *const RecordParts[] = {RecordFiles, RecordUnregister, RecordServices, RecordRegistry,
                                          RecordShortcuts};
static const char *const BaselineParts[] = {BaselineFiles, BaselineServices, BaselinePrinters};

void RemoveRecord(CUninstallRun &run)
{
    const std::string &model = run.Record().Model;
    if (!run.Tally().Complete())
        return;
    bool baseline = KeyExists(BaselineKeyPath(model));
    if (run.WhatIf()) {
        if (baseline)
            run.Tell(MakeItem(BaselineKind, MachineKeyText(BaselineKeyPath(model)), Outcome::Planned, ""));
        run.Tell(MakeItem(RecordKind, MachineKeyText(RecordKeyPath(model)), Outcome::Planned, "last"));
        return;
    }
    if (baseline)
        run.Tell(RemoveKey(BaselineKind, BaselineKeyPath(model), BaselineParts));
    run.Tell(RemoveKey(RecordKind, RecordKeyPath(model), RecordParts));
}
