// The files of a record: each one present, as at the baseline, and what
// waits beside it for a restart; and the libraries it registered.
#ifndef TOVREL_REPORT_FILE_CHECK_H
#define TOVREL_REPORT_FILE_CHECK_H

#include <string>
#include <vector>

#include "record/pending_renames.h"
#include "record/registry_read.h"
#include "report/baseline_store.h"
#include "report/file_location.h"
#include "report/report_item.h"

struct FileCheckContext {
    PendingRenames Renames;
    SpoolerFiles Spooler;
    const CBaseline *Baseline = nullptr;
    const std::vector<NamedValue> *RecordedFiles = nullptr;
};

ReportItem CheckRecordedFile(const std::string &path, const FileCheckContext &context);
// A self-registered library: the record gives its name and the path it was
// loaded from. What its registration wrote only the library knows.
ReportItem CheckRegisteredLibrary(const std::string &name, const std::string &loadedFrom,
                                  const FileCheckContext &context);

#endif
