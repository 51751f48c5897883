#include "record/json_quote.h"
#include "report/report_output.h"

static void WriteItem(FILE *out, const ReportItem &item, bool last)
{
    std::fprintf(out, "    {\"kind\": %s, \"subject\": %s, \"state\": \"%s\", \"detail\": %s}%s\n",
                 JsonQuoted(item.Kind).c_str(), JsonQuoted(item.Subject).c_str(), StateName(item.State),
                 JsonQuoted(item.Detail).c_str(), last ? "" : ",");
}

void WriteJsonReport(FILE *out, const std::string &model, bool baseline, const ReportItems &items,
                     const ReportTally &tally, int exitCode)
{
    std::fprintf(out, "{\n  \"model\": %s,\n  \"baseline\": %s,\n  \"items\": [\n", JsonQuoted(model).c_str(),
                 baseline ? "true" : "false");
    for (size_t i = 0; i < items.size(); ++i)
        WriteItem(out, items[i], i + 1 == items.size());
    std::fprintf(out,
                 "  ],\n  \"summary\": {\"items\": %d, \"held\": %d, \"drifted\": %d, \"pending\": %d, "
                 "\"unchecked\": %d},\n  \"exit\": %d\n}\n",
                 tally.Items, tally.Held, tally.Drifted, tally.Pending, tally.Unchecked, exitCode);
}

void WriteJsonModels(FILE *out, const std::vector<std::string> &models)
{
    std::fprintf(out, "{\n  \"models\": [");
    for (size_t i = 0; i < models.size(); ++i)
        std::fprintf(out, "%s%s", i ? ", " : "", JsonQuoted(models[i]).c_str());
    std::fprintf(out, "]\n}\n");
}

void WriteJsonNoRecord(FILE *out, const std::string &model)
{
    std::fprintf(out, "{\n  \"model\": %s,\n  \"error\": \"no record\",\n  \"exit\": 2\n}\n", JsonQuoted(model).c_str());
}

void WriteJsonBaseline(FILE *out, const std::string &model, bool kept, const BaselineTally &tally, int exitCode)
{
    std::fprintf(out,
                 "{\n  \"model\": %s,\n  \"kept\": %s,\n  \"files\": %d, \"missing\": %d, \"services\": %d, "
                 "\"printers\": %d,\n  \"exit\": %d\n}\n",
                 JsonQuoted(model).c_str(), kept ? "true" : "false", tally.Files, tally.MissingFiles, tally.Services,
                 tally.Printers, exitCode);
}
