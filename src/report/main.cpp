// tovrel-report: says whether a printer model is still installed the way
// its installation record says, item by item, for a person or a fleet tool.
// It reads the machine through its own calls only, so that it witnesses the
// install instead of repeating it.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "report/record_check.h"
#include "report/report_output.h"
#include "report/uninstall_record.h"

static const int ExitHeld = 0;
static const int ExitDrifted = 1;
static const int ExitNoRecord = 2;
static const int ExitBadArguments = 3;

static const char Usage[] =
    "usage: tovrel-report [--json] [MODEL]\n"
    "  without MODEL: lists the models that have an installation record\n"
    "  with MODEL:    checks every item of that model's record against this machine\n"
    "  --json         one JSON document instead of lines\n"
    "exit: 0 all held, 1 drifted or waiting for a restart, 2 no such record, 3 bad arguments\n";

struct Arguments {
    bool Json = false;
    bool Help = false;
    std::vector<std::string> Models;
};

static bool ParseArguments(int argc, char **argv, Arguments &arguments)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--json") == 0)
            arguments.Json = true;
        else if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "/?") == 0)
            arguments.Help = true;
        else if (argv[i][0] == '-' || argv[i][0] == '\0')
            return false;
        else
            arguments.Models.push_back(argv[i]);
    }
    return arguments.Models.size() <= 1;
}

static int ListModels(bool json)
{
    std::vector<std::string> models;
    ListRecordedModels(models);
    if (json)
        WriteJsonModels(stdout, models);
    else
        WriteTextModels(stdout, models);
    return models.empty() ? ExitNoRecord : ExitHeld;
}

static int ReportModel(const std::string &model, bool json)
{
    UninstallRecord record;
    if (!ReadUninstallRecord(model, record)) {
        if (json)
            WriteJsonNoRecord(stdout, model);
        std::fprintf(stderr, "tovrel-report: no installation record for \"%s\"\n", model.c_str());
        return ExitNoRecord;
    }
    ReportItems items = CheckRecord(record);
    ReportTally tally = TallyItems(items);
    int exitCode = tally.Drifted + tally.Pending > 0 ? ExitDrifted : ExitHeld;
    if (json)
        WriteJsonReport(stdout, model, items, tally, exitCode);
    else
        WriteTextReport(stdout, model, items, tally);
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
    int exitCode = arguments.Models.empty() ? ListModels(arguments.Json)
                                            : ReportModel(arguments.Models[0], arguments.Json);
    std::fflush(stdout);
    return exitCode;
}
