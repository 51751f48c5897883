// Takes a model's baseline: what the record alone cannot say, seen right
// after an install, so that later reports can tell a change from the
// install's own result.
#ifndef TOVREL_REPORT_BASELINE_TAKE_H
#define TOVREL_REPORT_BASELINE_TAKE_H

#include <string>

#include "record/uninstall_record.h"

struct BaselineTally {
    int Files = 0, MissingFiles = 0, Services = 0, Printers = 0;
};

// False, with what failed in failure, when the baseline could not be
// written whole.
bool TakeBaseline(const UninstallRecord &record, BaselineTally &tally, std::string &failure);

#endif
