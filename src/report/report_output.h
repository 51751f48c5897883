// The report in its two forms: lines for a person and a diff, and one JSON
// document for fleet tools.
#ifndef TOVREL_REPORT_REPORT_OUTPUT_H
#define TOVREL_REPORT_REPORT_OUTPUT_H

#include <cstdio>
#include <string>
#include <vector>

#include "report/baseline_take.h"
#include "report/record_check.h"

void WriteTextReport(FILE *out, const std::string &model, const ReportItems &items, const ReportTally &tally);
void WriteJsonReport(FILE *out, const std::string &model, bool baseline, const ReportItems &items,
                     const ReportTally &tally, int exitCode);
void WriteTextBaseline(FILE *out, const std::string &model, const BaselineTally &tally);
void WriteJsonBaseline(FILE *out, const std::string &model, bool kept, const BaselineTally &tally, int exitCode);
void WriteTextModels(FILE *out, const std::vector<std::string> &models);
void WriteJsonModels(FILE *out, const std::vector<std::string> &models);
void WriteJsonNoRecord(FILE *out, const std::string &model);

#endif
