#include "record/uninstall_record.h"

#include <algorithm>

#include "record/product_keys.h"
#include "record/text_compare.h"

const char *const ModelValueNames[] = {
    "Driver File", "Data File", "Config File", "Help File", "Language Monitor Name",
    "Language Monitor File", "Print Processor Name", "Print Processor File", "Default Data Type",
    "PnP ID"};
const int ModelValueCount = sizeof(ModelValueNames) / sizeof(ModelValueNames[0]);

bool ListRecordedModels(std::vector<std::string> &models, LONG &error)
{
    CRegistryHandle root;
    error = RegOpenKeyExA(HKEY_LOCAL_MACHINE, RecordRoot, 0, KEY_READ, root.Put());
    if (error == ERROR_FILE_NOT_FOUND)
        return true;
    if (error != ERROR_SUCCESS || !ListSubkeys(root.Get(), models, &error))
        return false;
    std::sort(models.begin(), models.end(),
              [](const std::string &a, const std::string &b) { return CompareNoCase(a, b) < 0; });
    return true;
}

static void NoteUnreadable(UninstallRecord &record, const char *part, LONG error)
{
    NamedValue failure;
    failure.Name = part;
    failure.Text = "cannot be listed, error " + std::to_string(error);
    record.Unreadable.push_back(failure);
}

// A missing subkey is an empty list: the install writes one only when it has
// something to note there.
static void ReadSubkey(HKEY model, const char *subkey, std::vector<NamedValue> &values, UninstallRecord &record)
{
    CRegistryHandle key;
    LONG error = RegOpenKeyExA(model, subkey, 0, KEY_READ, key.Put());
    if (error == ERROR_SUCCESS && ListValues(key.Get(), values, &error))
        return;
    if (error != ERROR_FILE_NOT_FOUND)
        NoteUnreadable(record, subkey, error);
}

static void ReadModelValues(HKEY model, UninstallRecord &record)
{
    std::vector<NamedValue> all;
    LONG error = ERROR_SUCCESS;
    if (!ListValues(model, all, &error))
        NoteUnreadable(record, "model values", error);
    for (int i = 0; i < ModelValueCount; ++i)
        for (const NamedValue &value : all)
            if (EqualNoCase(value.Name, ModelValueNames[i])) {
                record.ModelValues.push_back(value);
                break;
            }
}

bool ReadUninstallRecord(const std::string &model, UninstallRecord &record)
{
    CRegistryHandle key;
    if (model.empty() || !OpenKeyToRead(HKEY_LOCAL_MACHINE, RecordKeyPath(model), key))
        return false;
    record.Model = model;
    ReadModelValues(key.Get(), record);
    ReadSubkey(key.Get(), RecordFiles, record.Files, record);
    ReadSubkey(key.Get(), RecordUnregister, record.Unregister, record);
    ReadSubkey(key.Get(), RecordServices, record.Services, record);
    ReadSubkey(key.Get(), RecordRegistry, record.Registry, record);
    ReadSubkey(key.Get(), RecordShortcuts, record.Shortcuts, record);
    return true;
}

const NamedValue *FindModelValue(const UninstallRecord &record, const char *name)
{
    for (const NamedValue &value : record.ModelValues)
        if (EqualNoCase(value.Name, name))
            return &value;
    return nullptr;
}

bool ReadOtherRecords(const std::string &model, std::vector<UninstallRecord> &records, LONG &error)
{
    std::vector<std::string> models;
    if (!ListRecordedModels(models, error))
        return false;
    for (const std::string &other : models) {
        UninstallRecord record;
        if (!EqualNoCase(other, model) && ReadUninstallRecord(other, record))
            records.push_back(record);
    }
    return true;
}
