#include <windows.h>

#include "report/json_text.h"
#include "report/report_output.h"

// The record's text is in the machine's ANSI code page; JSON is UTF-8.
static std::string Utf8Of(const std::string &ansi)
{
    if (ansi.empty())
        return ansi;
    int wideLength = MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), NULL, 0);
    std::wstring wide(wideLength, L'\0');
    MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), &wide[0], wideLength);
    int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, NULL, 0, NULL, NULL);
    std::string utf8(length, '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, &utf8[0], length, NULL, NULL);
    return utf8;
}

static std::string Quoted(const std::string &ansi)
{
    return "\"" + JsonEscape(Utf8Of(ansi)) + "\"";
}

static void WriteItem(FILE *out, const ReportItem &item, bool last)
{
    std::fprintf(out, "    {\"kind\": %s, \"subject\": %s, \"state\": \"%s\", \"detail\": %s}%s\n",
                 Quoted(item.Kind).c_str(), Quoted(item.Subject).c_str(), StateName(item.State),
                 Quoted(item.Detail).c_str(), last ? "" : ",");
}

void WriteJsonReport(FILE *out, const std::string &model, bool baseline, const ReportItems &items,
                     const ReportTally &tally, int exitCode)
{
    std::fprintf(out, "{\n  \"model\": %s,\n  \"baseline\": %s,\n  \"items\": [\n", Quoted(model).c_str(),
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
        std::fprintf(out, "%s%s", i ? ", " : "", Quoted(models[i]).c_str());
    std::fprintf(out, "]\n}\n");
}

void WriteJsonNoRecord(FILE *out, const std::string &model)
{
    std::fprintf(out, "{\n  \"model\": %s,\n  \"error\": \"no record\",\n  \"exit\": 2\n}\n", Quoted(model).c_str());
}

void WriteJsonBaseline(FILE *out, const std::string &model, bool kept, const BaselineTally &tally, int exitCode)
{
    std::fprintf(out,
                 "{\n  \"model\": %s,\n  \"kept\": %s,\n  \"files\": %d, \"missing\": %d, \"services\": %d, "
                 "\"printers\": %d,\n  \"exit\": %d\n}\n",
                 Quoted(model).c_str(), kept ? "true" : "false", tally.Files, tally.MissingFiles, tally.Services,
                 tally.Printers, exitCode);
}
