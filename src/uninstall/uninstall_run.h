// One run of the uninstall of a model: its record, what else still uses
// things, whether it only plans, and how it tells of each item.
#ifndef TOVREL_UNINSTALL_UNINSTALL_RUN_H
#define TOVREL_UNINSTALL_UNINSTALL_RUN_H

#include <cstdio>
#include <vector>

#include "record/uninstall_record.h"
#include "uninstall/record_values.h"
#include "uninstall/shared_claims.h"
#include "uninstall/uninstall_item.h"

class CUninstallRun {
public:
    CUninstallRun(const UninstallRecord &record, bool whatIf, bool json);

    const UninstallRecord &Record() const { return TheRecord; }
    const CSharedClaims &Claims() const { return TheClaims; }
    bool WhatIf() const { return Planning; }
    const std::vector<UninstallItem> &Items() const { return Told; }
    const UninstallTally &Tally() const { return Counts; }

    // An item that has no value of its own in the record.
    void Tell(const UninstallItem &item);
    // An item of a part of the record: once it is gone, absent or kept for
    // another's sake, its value goes from the record; a value that cannot
    // go fails the item.
    void Settle(UninstallItem item, const char *part, const std::string &valueName);

private:
    void Note(const UninstallItem &item);

    const UninstallRecord &TheRecord;
    CSharedClaims TheClaims;
    CRecordValues Values;
    bool Planning, Json;
    std::vector<UninstallItem> Told;
    UninstallTally Counts;
};

// A value of the record that is not text cannot be what the install wrote.
bool IsTextValue(const NamedValue &value);
UninstallItem RefusedValueType(const char *kind, const NamedValue &value);

#endif
