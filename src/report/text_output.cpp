#include "report/report_output.h"

#include "report/baseline_store.h"

static const int KindWidth = 10;

static const char *StatePrefix(ItemState state)
{
    switch (state) {
    case ItemState::Held: return "";
    case ItemState::Drifted: return "DRIFT: ";
    case ItemState::Pending: return "PENDING: ";
    case ItemState::Unchecked: return "UNCHECKED: ";
    }
    return "";
}

void WriteTextReport(FILE *out, const std::string &model, const ReportItems &items, const ReportTally &tally)
{
    for (const ReportItem &item : items)
        std::fprintf(out, "%-*s%s  %s%s\n", KindWidth, item.Kind.c_str(), item.Subject.c_str(),
                     StatePrefix(item.State), item.Detail.c_str());
    std::fprintf(out, "%-*s%s: %d items, %d held, %d drifted, %d pending, %d unchecked\n", KindWidth, "summary",
                 model.c_str(), tally.Items, tally.Held, tally.Drifted, tally.Pending, tally.Unchecked);
}

void WriteTextModels(FILE *out, const std::vector<std::string> &models)
{
    for (const std::string &model : models)
        std::fprintf(out, "%s\n", model.c_str());
}

static std::string Count(int count, const char *noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void WriteTextBaseline(FILE *out, const std::string &model, const BaselineTally &tally)
{
    std::fprintf(out, "%-*s%s: %s, %s, %s kept under %s", KindWidth, "baseline", model.c_str(),
                 Count(tally.Files, "file").c_str(), Count(tally.Services, "service").c_str(),
                 Count(tally.Printers, "printer").c_str(), BaselineKeyText(model).c_str());
    if (tally.MissingFiles > 0)
        std::fprintf(out, "; %s of the record not there", Count(tally.MissingFiles, "file").c_str());
    std::fprintf(out, "\n");
}
