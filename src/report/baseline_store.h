// The report's own record of what it saw right after an install, kept
// beside the uninstall tree, never inside it, whose format is fixed:
//   HKLM\SOFTWARE\Halvern\Plenarc\6.0\Report Baseline\MODEL\files, services, printers
// Each value there is named by its file path, service or printer and holds
// labelled texts ("size=26") as a REG_MULTI_SZ.
#ifndef TOVREL_REPORT_BASELINE_STORE_H
#define TOVREL_REPORT_BASELINE_STORE_H

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "record/product_keys.h"
#include "support/handles.h"

// The model's key as a person reads it.
std::string BaselineKeyText(const std::string &model);

typedef std::map<std::string, std::string> BaselineFields;

enum class EntryState { Absent, Found, Unreadable };

struct BaselineEntry {
    std::string Name;
    EntryState State = EntryState::Absent;
    BaselineFields Fields;
};

class CBaseline {
public:
    // False when no baseline is kept for the model.
    bool Open(const std::string &model);
    bool Exists() const { return Key.IsValid(); }
    EntryState Entry(const char *part, const std::string &name, BaselineFields &fields) const;
    // Every entry of a part; false, with the registry's code, when the list
    // cannot be read.
    bool Entries(const char *part, std::vector<BaselineEntry> &entries, LONG &error) const;

private:
    CRegistryHandle Key;
};

// A field that holds a number of decimal digits and nothing else.
bool ReadFieldNumber(const BaselineFields &fields, const char *label, unsigned long long &number);
// The text of a field, or false when it is not there.
bool ReadFieldText(const BaselineFields &fields, const char *label, std::string &text);

#endif
