// The installation record of one model, as the install left it under
// HKEY_LOCAL_MACHINE; read only.
#ifndef TOVREL_RECORD_UNINSTALL_RECORD_H
#define TOVREL_RECORD_UNINSTALL_RECORD_H

#include <string>
#include <vector>

#include "record/registry_read.h"

// The values of a model's own key, in the order in which they are listed.
extern const char *const ModelValueNames[];
extern const int ModelValueCount;

struct UninstallRecord {
    std::string Model;
    std::vector<NamedValue> ModelValues;  // those of ModelValueNames that are there
    std::vector<NamedValue> Files, Unregister, Services, Registry, Shortcuts;
    // The parts whose listing failed, each with why: what was read of them
    // is above, and the rest is not known.
    std::vector<NamedValue> Unreadable;
};

// The models that have a record, sorted without regard to case; false, with
// the registry's code in error, when they cannot be listed.
bool ListRecordedModels(std::vector<std::string> &models, LONG &error);
// False when the model has no record.
bool ReadUninstallRecord(const std::string &model, UninstallRecord &record);
// The records of every model but this one; false, with the registry's code
// in error, when the models cannot be listed.
bool ReadOtherRecords(const std::string &model, std::vector<UninstallRecord> &records, LONG &error);
// The recorded model value of that name, or null.
const NamedValue *FindModelValue(const UninstallRecord &record, const char *name);

#endif
