// What a run tells: a line an item as it goes, for a person and a diff,
// or one JSON document at the end for fleet tools.
#ifndef TOVREL_UNINSTALL_UNINSTALL_OUTPUT_H
#define TOVREL_UNINSTALL_UNINSTALL_OUTPUT_H

#include <cstdio>
#include <string>
#include <vector>

#include "uninstall/uninstall_item.h"

struct RunSummary {
    std::string Model;
    bool WhatIf = false;
    bool RestartNeeded = false;
    bool RecordKept = false;  // something failed or was refused: the record stays
    int ExitCode = 0;
};

void WriteTextItem(FILE *out, const UninstallItem &item);
void WriteTextSummary(FILE *out, const RunSummary &summary, const UninstallTally &tally);
void WriteJsonRun(FILE *out, const RunSummary &summary, const std::vector<UninstallItem> &items,
                  const UninstallTally &tally);
void WriteJsonNoRecord(FILE *out, const std::string &model, int exitCode);

#endif
