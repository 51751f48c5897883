#include "report/baseline_store.h"

#include "record/registry_read.h"

static const char LabelEnd = '=';
// More digits than this overflow the number of bytes a file can hold.
static const size_t LongestNumber = 19;

std::string BaselineKeyText(const std::string &model)
{
    return MachineKeyText(BaselineKeyPath(model));
}

bool CBaseline::Open(const std::string &model)
{
    return !model.empty() && OpenKeyToRead(HKEY_LOCAL_MACHINE, BaselineKeyPath(model), Key);
}

// The strings of a REG_MULTI_SZ, each "label=text" with a label of its own;
// anything else, a value of another type included, is no entry.
static bool ParseFields(DWORD type, const std::vector<BYTE> &data, BaselineFields &fields)
{
    if (type != REG_MULTI_SZ)
        return false;
    std::string all(data.begin(), data.end());
    for (size_t at = 0; at < all.size();) {
        size_t end = all.find('\0', at);
        std::string item = all.substr(at, end == std::string::npos ? std::string::npos : end - at);
        at = end == std::string::npos ? all.size() : end + 1;
        if (item.empty())
            continue;
        size_t label = item.find(LabelEnd);
        if (label == std::string::npos || label == 0
            || !fields.insert(std::make_pair(item.substr(0, label), item.substr(label + 1))).second)
            return false;
    }
    return true;
}

EntryState CBaseline::Entry(const char *part, const std::string &name, BaselineFields &fields) const
{
    CRegistryHandle key;
    DWORD type = 0;
    std::vector<BYTE> data;
    fields.clear();
    if (!Key.IsValid() || RegOpenKeyExA(Key.Get(), part, 0, KEY_READ, key.Put()) != ERROR_SUCCESS)
        return EntryState::Absent;
    if (RegQueryValueExA(key.Get(), name.c_str(), NULL, NULL, NULL, NULL) == ERROR_FILE_NOT_FOUND)
        return EntryState::Absent;
    if (!QueryValueBytes(key.Get(), name, type, data) || !ParseFields(type, data, fields))
        return EntryState::Unreadable;
    return EntryState::Found;
}

bool CBaseline::Entries(const char *part, std::vector<BaselineEntry> &entries, LONG &error) const
{
    CRegistryHandle key;
    std::vector<NamedValue> values;
    error = Key.IsValid() ? RegOpenKeyExA(Key.Get(), part, 0, KEY_READ, key.Put()) : ERROR_FILE_NOT_FOUND;
    if (error != ERROR_SUCCESS || !ListValues(key.Get(), values, &error))
        return false;
    for (const NamedValue &value : values) {
        BaselineEntry entry;
        entry.Name = value.Name;
        entry.State = Entry(part, value.Name, entry.Fields);
        entries.push_back(entry);
    }
    return true;
}

bool ReadFieldText(const BaselineFields &fields, const char *label, std::string &text)
{
    BaselineFields::const_iterator found = fields.find(label);
    if (found == fields.end())
        return false;
    text = found->second;
    return true;
}

bool ReadFieldNumber(const BaselineFields &fields, const char *label, unsigned long long &number)
{
    std::string text;
    if (!ReadFieldText(fields, label, text) || text.empty() || text.size() > LongestNumber
        || text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    number = std::stoull(text);
    return true;
}
