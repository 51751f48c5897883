// tovrel-uninstall: takes back, from its installation record, everything
// that an install of a printer model did, and nothing else, then the
// record itself. It reads the machine through its own calls only, as
// tovrel-report does, and says removed only of what it found gone.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "record/uninstall_record.h"
#include "uninstall/uninstall_output.h"
#include "uninstall/uninstall_steps.h"

static const int ExitRemoved = 0;
static const int ExitFailed = 1;
static const int ExitNoRecord = 2;
static const int ExitBadArguments = 3;
static const int ExitRestartNeeded = 4;

static const char Usage[] =
    "usage: tovrel-uninstall [--json] [--what-if] MODEL\n"
    "  takes back what the installation record of MODEL names, in this order:\n"
    "  printers on its driver, the driver, its monitor and print processor,\n"
    "  services, self-registrations, registry values, shortcuts, files, and\n"
    "  last the record; what another model or driver still uses stays\n"
    "  --what-if  prints what would become of each item and changes nothing\n"
    "  --json     one JSON document instead of lines\n"
    "exit: 0 all removed, 1 something failed or was refused (the record stays\n"
    "      for a second run), 2 no such record, 3 bad arguments, 4 all removed\n"
    "      or waiting for the restart that is needed to finish; --what-if: 0 when\n"
    "      nothing would fail or be refused, 1 otherwise\n";

struct Arguments {
    bool Json = false, WhatIf = false, Help = false;
    std::vector<std::string> Models;
};

// Empty text when the arguments ask for one model; otherwise what is wrong.
// A model's record is one key: a name with a backslash would be another's.
static std::string ParseArguments(int argc, char **argv, Arguments &arguments)
{
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument == "--json")
            arguments.Json = true;
        else if (argument == "--what-if")
            arguments.WhatIf = true;
        else if (argument == "--help" || argument == "/?")
            arguments.Help = true;
        else if (argument.empty() || argument[0] == '-')
            return "unknown option \"" + argument + "\"";
        else if (argument.find('\\') != std::string::npos)
            return "\"" + argument + "\" holds a backslash, which no model's name does";
        else
            arguments.Models.push_back(argument);
    }
    if (arguments.Help || arguments.Models.size() == 1)
        return std::string();
    return arguments.Models.empty() ? "no model named" : "one model at a time";
}

static int ExitCodeOf(const UninstallTally &tally)
{
    if (!tally.Complete())
        return ExitFailed;
    return tally.Pending > 0 ? ExitRestartNeeded : ExitRemoved;
}

static int Uninstall(const std::string &model, bool whatIf, bool json)
{
    UninstallRecord record;
    if (!ReadUninstallRecord(model, record)) {
        if (json)
            WriteJsonNoRecord(stdout, model, ExitNoRecord);
        std::fprintf(stderr, "tovrel-uninstall: no installation record for \"%s\"\n", model.c_str());
        return ExitNoRecord;
    }
    SortRecord(record);
    CUninstallRun run(record, whatIf, json);
    TakeBack(run);
    RunSummary summary;
    summary.Model = model;
    summary.WhatIf = whatIf;
    summary.RestartNeeded = run.Tally().Pending > 0;
    summary.RecordKept = !run.Tally().Complete();
    summary.ExitCode = ExitCodeOf(run.Tally());
    if (json)
        WriteJsonRun(stdout, summary, run.Items(), run.Tally());
    else
        WriteTextSummary(stdout, summary, run.Tally());
    return summary.ExitCode;
}

int main(int argc, char **argv)
{
    Arguments arguments;
    std::string wrong = ParseArguments(argc, argv, arguments);
    if (!wrong.empty()) {
        std::fprintf(stderr, "tovrel-uninstall: %s\n%s", wrong.c_str(), Usage);
        return ExitBadArguments;
    }
    if (arguments.Help) {
        std::fputs(Usage, stdout);
        return ExitRemoved;
    }
    int exitCode = Uninstall(arguments.Models[0], arguments.WhatIf, arguments.Json);
    std::fflush(stdout);
    return exitCode;
}
