
#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/image_file.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/progress.h"
#include "tools/lq/project_input.h"
#include "tools/lq/tables.h"
#include "tools/lq/translation.h"
#include "tools/lq/use_counts.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr int kTranslateSchema = 2;

Json SummaryJson(const TranslateOptions& options, Translation& translation,
                 const std::vector<host::Report>& reports) {
    Json tables = Json::array();
    for (const auto& [id, name] : kTableNames) {
        const TableExtent extent = ExtentOf(*translation.tables, id);
        tables.push_back({{"table", name}, {"lines", extent.lines}, {"bytes", extent.bytes}});
    }
    Json refusals = Json::array();
    for (const Refusal& refusal : translation.refusals) {
        refusals.push_back({{"list", refusal.list},
                            {"name", refusal.name},
                            {"type", refusal.type},
                            {"code", host::CodeText(refusal.check->code)},
                            {"severity", NameOf(host::Severity::kError)},
                            {"reason", refusal.reason},
                            {"file", refusal.file},
                            {"line", refusal.line},
                            {"column", refusal.column}});
    }
    Json found = Json::array();
    for (const host::Report& report : reports) {
        const host::Check& check = host::CheckOf(report);
        found.push_back({{"code", host::CodeText(check.code)},
                         {"severity", NameOf(check.severity)},
                         {"file", report.file},
                         {"line", report.line},
                         {"column", report.column},
                         {"element", report.path},
                         {"message", report.message},
                         {"more", report.more}});
    }
    Json document = NewDocument(kTranslateSchema);
    document["project"] = DisplayName(options.files.projects.front());
    NameFiles(options.files, document);
    document.update({{"image", options.output.empty() ? Json(nullptr) : Json(options.output)},
                     {"declarations", translation.declarations},
                     {"tables", tables},
                     {"refused", refusals},
                     {"reports", found}});
    return document;
}

void PrintSummary(Translation& translation) {
    Table summary;
    summary.columns = {{"table"}, {"lines", true}, {"bytes", true}};
    for (const auto& [id, name] : kTableNames) {
        const TableExtent extent = ExtentOf(*translation.tables, id);
        summary.rows.push_back(
            {std::string(name), std::to_string(extent.lines), std::to_string(extent.bytes)});
    }
    Print(summary);
    PrintLine("");
    PrintLine(std::to_string(translation.declarations) + " declarations, " +
              std::to_string(translation.refusals.size()) + " refused");
}

}  // namespace

int RunTranslate(const TranslateOptions& options) {
    CheckImageOutput(options.output, options.json);
    RefuseInputAsOutput(options.files, options.output);
    std::vector<host::Report> reports;
    // The process ends with the command: giving a large project back piece by piece would only
    // delay it.
    static host::Project& project = *new host::Project;
    static Translation& translation = *new Translation;
    if (options.uses) {
        project.KeepCode();
    }
    ReadProject(options.files, project, reports);
    translation = Translate(project);
    if (options.uses) {
        CountUsesInTables(project, *translation.tables);
    }
    if (!options.output.empty()) {
        const Progress progress(Say("saving {}", options.output));
        SaveImage(*translation.tables, options.output);
    }
    for (const host::Report& report : reports) {
        PrintMessage(report);
    }
    PrintRefusals(translation.refusals);
    const bool isResultImage = options.output == "-";  // nothing must follow it there
    if (!isResultImage && options.json) {
        PrintJson(SummaryJson(options, translation, reports));
    } else if (!isResultImage) {
        PrintSummary(translation);
    }
    if (translation.declarations == 0) {
        PrintMessage(WholeOf(options.files), Say("the project has no declarations"));
        return kInputHasFaults;
    }
    return translation.refusals.empty() && reports.empty() ? kDone : kInputHasFaults;
}

}  // namespace lq::tool
