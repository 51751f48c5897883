#include "report/uninstall_record.h"

#include <algorithm>

#include "report/text_compare.h"

static const char RecordRoot[] = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data";

const char *const ModelValueNames[] = {
    "Driver File", "Data File", "Config File", "Help File", "Language Monitor Name",
    "Language Monitor File", "Print Processor Name", "Print Processor File", "Default Data Type",
    "PnP ID"};
const int ModelValueCount = sizeof(ModelValueNames) / sizeof(ModelValueNames[0]);

bool ListRecordedModels(std::vector<std::string> &models)
{
    CRegistryHandle root;
    if (!OpenKeyToRead(HKEY_LOCAL_MACHINE, RecordRoot, root) || !ListSubkeys(root.Get(), models))
        return false;
    std::sort(models.begin(), models.end(),
              [](const std::string &a, const std::string &b) { return CompareNoCase(a, b) < 0; });
    return true;
}

// A missing subkey is an empty list: the install writes one only when it has
// something to note there.
static void ReadSubkey(HKEY model, const char *subkey, std::vector<NamedValue> &values)
{
    CRegistryHandle key;
    if (OpenKeyToRead(model, subkey, key))
        ListValues(key.Get(), values);
}

static void ReadModelValues(HKEY model, UninstallRecord &record)
{
    std::vector<NamedValue> all;
    ListValues(model, all);
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
    if (model.empty() || !OpenKeyToRead(HKEY_LOCAL_MACHINE, std::string(RecordRoot) + "\\" + model, key))
        return false;
    record.Model = model;
    ReadModelValues(key.Get(), record);
    ReadSubkey(key.Get(), "files", record.Files);
    ReadSubkey(key.Get(), "unregister", record.Unregister);
    ReadSubkey(key.Get(), "services", record.Services);
    ReadSubkey(key.Get(), "registry", record.Registry);
    ReadSubkey(key.Get(), "Shortcuts", record.Shortcuts);
    return true;
}

const NamedValue *FindModelValue(const UninstallRecord &record, const char *name)
{
    for (const NamedValue &value : record.ModelValues)
        if (EqualNoCase(value.Name, name))
            return &value;
    return nullptr;
}
