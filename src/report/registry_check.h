// The registry lines of a record: each value there with the type and data
// that the line gives.
#ifndef TOVREL_REPORT_REGISTRY_CHECK_H
#define TOVREL_REPORT_REGISTRY_CHECK_H

#include <string>
#include <vector>

#include "record/registry_read.h"
#include "report/report_item.h"

// recordedFiles: the record's "files", for lines whose value names a file.
ReportItem CheckRegistryLine(const std::string &line, const std::vector<NamedValue> &recordedFiles);

#endif
