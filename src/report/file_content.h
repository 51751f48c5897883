// How a present file's content stands: against the baseline when one is
// kept; without one, only whether the other recorded copies of its name
// agree with it, which can raise a doubt but never settle one.
#ifndef TOVREL_REPORT_FILE_CONTENT_H
#define TOVREL_REPORT_FILE_CONTENT_H

#include <string>
#include <vector>

#include "record/registry_read.h"
#include "report/baseline_store.h"
#include "report/file_facts.h"
#include "report/report_item.h"

// path: the path the baseline keeps the file under; recordedFiles: the
// record's files, among which its namesakes are.
Verdict JudgeContent(const std::string &path, const FileFacts &facts, const CBaseline &baseline,
                     const std::vector<NamedValue> &recordedFiles);

#endif
