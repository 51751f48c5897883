// Where below HKEY_LOCAL_MACHINE the install keeps its record of each model
// and tovrel-report its baseline of each, and the names of their parts.
#ifndef TOVREL_RECORD_PRODUCT_KEYS_H
#define TOVREL_RECORD_PRODUCT_KEYS_H

#include <string>

extern const char RecordRoot[];
extern const char BaselineRoot[];

// The parts of a model's record, as the install names them: the case is theirs.
extern const char RecordFiles[];
extern const char RecordUnregister[];
extern const char RecordServices[];
extern const char RecordRegistry[];
extern const char RecordShortcuts[];

extern const char BaselineFiles[];
extern const char BaselineServices[];
extern const char BaselinePrinters[];

std::string RecordKeyPath(const std::string &model);
std::string BaselineKeyPath(const std::string &model);
// A key of HKEY_LOCAL_MACHINE as a person reads it.
std::string MachineKeyText(const std::string &path);

#endif
