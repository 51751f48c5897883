#include "uninstall/uninstall_output.h"

#include "record/json_quote.h"

static const int KindWidth = 10;

void WriteTextItem(FILE *out, const UninstallItem &item)
{
    std::fprintf(out, "%-*s%s  %s%s%s\n", KindWidth, item.Kind.c_str(), item.Subject.c_str(),
                 OutcomeWords(item.State), item.Detail.empty() ? "" : ": ", item.Detail.c_str());
    // A run that is stopped half-way has told of everything it did.
    std::fflush(out);
}

void WriteTextSummary(FILE *out, const RunSummary &summary, const UninstallTally &tally)
{
    std::fprintf(out, "%-*s%s: %d items, ", KindWidth, "summary", summary.Model.c_str(), tally.Items);
    if (summary.WhatIf)
        std::fprintf(out, "%d would be removed, ", tally.Planned);
    else
        std::fprintf(out, "%d removed, %d pending restart, ", tally.Removed, tally.Pending);
    std::fprintf(out, "%d shared, %d absent already, %d failed, %d refused%s%s%s\n", tally.Shared, tally.Absent,
                 tally.Failed, tally.Refused, summary.WhatIf ? "; nothing changed" : "",
                 !summary.RecordKept     ? ""
                 : summary.WhatIf ? "; the record would stay"
                                  : "; the record keeps what is still there, for a second run",
                 summary.RestartNeeded ? "; a restart is needed to finish" : "");
}

static void WriteJsonItem(FILE *out, const UninstallItem &item, bool last)
{
    std::fprintf(out, "    {\"kind\": %s, \"subject\": %s, \"state\": \"%s\", \"detail\": %s}%s\n",
                 JsonQuoted(item.Kind).c_str(), JsonQuoted(item.Subject).c_str(), OutcomeName(item.State),
                 JsonQuoted(item.Detail).c_str(), last ? "" : ",");
}

void WriteJsonRun(FILE *out, const RunSummary &summary, const std::vector<UninstallItem> &items,
                  const UninstallTally &tally)
{
    std::fprintf(out, "{\n  \"model\": %s,\n  \"what_if\": %s,\n  \"items\": [\n", JsonQuoted(summary.Model).c_str(),
                 summary.WhatIf ? "true" : "false");
    for (size_t i = 0; i < items.size(); ++i)
        WriteJsonItem(out, items[i], i + 1 == items.size());
    std::fprintf(out,
                 "  ],\n  \"summary\": {\"items\": %d, \"removed\": %d, \"pending\": %d, \"shared\": %d, "
                 "\"absent\": %d, \"failed\": %d, \"refused\": %d, \"planned\": %d},\n"
                 "  \"record_kept\": %s,\n  \"restart_needed\": %s,\n  \"exit\": %d\n}\n",
                 tally.Items, tally.Removed, tally.Pending, tally.Shared, tally.Absent, tally.Failed, tally.Refused,
                 tally.Planned, summary.RecordKept ? "true" : "false", summary.RestartNeeded ? "true" : "false",
                 summary.ExitCode);
}

void WriteJsonNoRecord(FILE *out, const std::string &model, int exitCode)
{
    std::fprintf(out, "{\n  \"model\": %s,\n  \"error\": \"no record\",\n  \"exit\": %d\n}\n",
                 JsonQuoted(model).c_str(), exitCode);
}
