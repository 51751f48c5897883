// tovrel-report: says whether a printer model is still installed the way
// its installation record says, item by item, for a person or a fleet tool.
// It reads the machine through its own calls only, so that it witnesses the
// install instead of repeating it.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "record/uninstall_record.h"
#include "report/baseline_take.h"
#include "report/record_check.h"
#include "report/report_output.h"

static const int ExitHeld = 0;
static const int ExitDrifted = 1;
static const int ExitNoRecord = 2;
static const int ExitBadArguments = 3;
static const int ExitIncomplete = 4;

static const char Usage[] =
    "usage: tovrel-report [--json] [MODEL]\n"
    "       tovrel-report [--json] --baseline MODEL\n"
    "  without MODEL: lists the models that have an installation record\n"
    "  with MODEL:    checks every item of that model's record against this machine\n"
    "  --baseline     keeps what this machine holds of the model now, for later\n"
    "                 reports to compare with: take it right after each install or\n"
    "                 repair; it replaces an earlier one\n"
    "  --json         one JSON document instead of lines\n"
    "exit: 0 all held, 1 drifted or waiting for a restart, 2 no such record,\n"
    "      3 bad arguments, 4 the record or the baseline not read or written whole\n";

struct Arguments {
    bool Json = false;
    bool Help = false;
    bool Baseline = false;
    std::vector<std::string> Models;
};

static bool ParseArguments(int argc, char **argv, Arguments &arguments)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--json") == 0)
            arguments.Json = true;
        else if (std::strcmp(argv[i], "--baseline") == 0)
            arguments.Baseline = true;
        else if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "/?") == 0)
            arguments.Help = true;
        else if (argv[i][0] == '-' || argv[i][0] == '\0')
            return false;
        else
            arguments.Models.push_back(argv[i]);
    }
    return arguments.Models.size() <= 1 && (!arguments.Baseline || arguments.Models.size() == 1);
}

static int ListModels(bool json)
{
    std::vector<std::string> models;
    LONG error = ERROR_SUCCESS;
    if (!ListRecordedModels(models, error)) {
        std::fprintf(stderr, "tovrel-report: the installation records cannot be listed, error %ld\n", error);
        return ExitIncomplete;
    }
    if (json)
        WriteJsonModels(stdout, models);
    else
        WriteTextModels(stdout, models);
    return models.empty() ? ExitNoRecord : ExitHeld;
}

static bool ReadRecord(const std::string &model, bool json, UninstallRecord &record)
{
    if (ReadUninstallRecord(model, record))
        return true;
    if (json)
        WriteJsonNoRecord(stdout, model);
    std::fprintf(stderr, "tovrel-report: no installation record for \"%s\"\n", model.c_str());
    return false;
}

static int ReportModel(const std::string &model, bool json)
{
    UninstallRecord record;
    if (!ReadRecord(model, json, record))
        return ExitNoRecord;
    CBaseline baseline;
    baseline.Open(model);
    ReportItems items = CheckRecord(record, baseline);
    ReportTally tally = TallyItems(items);
    int exitCode = tally.Incomplete ? ExitIncomplete : tally.Drifted + tally.Pending > 0 ? ExitDrifted : ExitHeld;
    if (json)
        WriteJsonReport(stdout, model, baseline.Exists(), items, tally, exitCode);
    else
        WriteTextReport(stdout, model, items, tally);
    return exitCode;
}

static int KeepBaseline(const std::string &model, bool json)
{
    UninstallRecord record;
    if (!ReadRecord(model, json, record))
        return ExitNoRecord;
    BaselineTally tally;
    std::string failure;
    bool whole = TakeBaseline(record, tally, failure);
    if (!whole)
        std::fprintf(stderr, "tovrel-report: no baseline kept for \"%s\": %s\n", model.c_str(), failure.c_str());
    int exitCode = whole ? ExitHeld : ExitIncomplete;
    if (json)
        WriteJsonBaseline(stdout, model, whole, tally, exitCode);
    else if (whole)
        WriteTextBaseline(stdout, model, tally);
    return exitCode;
}

int main(int argc, char **argv)
{
    Arguments arguments;
    if (!ParseArguments(argc, argv, arguments)) {
        std::fputs(Usage, stderr);
        return ExitBadArguments;
    }
    if (arguments.Help) {
        std::fputs(Usage, stdout);
        return ExitHeld;
    }
    int exitCode = arguments.Baseline         ? KeepBaseline(arguments.Models[0], arguments.Json)
                   : arguments.Models.empty() ? ListModels(arguments.Json)
                                              : ReportModel(arguments.Models[0], arguments.Json);
    std::fflush(stdout);
    return exitCode;
}
