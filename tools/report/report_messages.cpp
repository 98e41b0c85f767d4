#include "tools/report/report_messages.h"

#include <map>
#include <string>

#include "lq_data/host/text/message.h"
#include "tools/lq/check_settings.h"
#include "tools/lq/progress.h"

namespace lq::tool {

using host::CodeText;
using host::Finding;
using host::Severity;
using host::Translated;

namespace {

// A project may have a finding for each of its variables: messages are written without an object in
// memory for each of them.
class MessageWriter {
  public:
    MessageWriter(FileNames& files, ReportPage& page) : files_(files), page_(page) {}

    void Begin(const char* by, Severity severity) {
        page_.Add(std::string(separator_) + R"({"by":")" + by + R"(","severity":")" +
                  host::NameOf(severity) + "\"");
        separator_ = ",";
    }
    void AddPlace(const std::string& file, uint32_t line, uint32_t column) {
        AddText("file", files_.Shown(file));
        page_.Add(R"(,"line":)" + std::to_string(line) + R"(,"column":)" + std::to_string(column));
    }
    void AddObject(const std::string& holder, const std::string& name) {
        AddText("object", holder + (holder.empty() || name.empty() ? "" : ".") + name);
    }
    void AddText(const std::string& title, const std::string& text) {
        page_.Add(",\"" + title + "\":");
        page_.AddText(text);
    }
    void End(uint32_t more) { page_.Add(R"(,"more":)" + std::to_string(more) + "}"); }

  private:
    FileNames& files_;
    ReportPage& page_;
    const char* separator_ = "";
};

Json RelatedJson(const Finding& finding, FileNames& files) {
    Json all = Json::array();
    for (const host::RelatedPlace& related : finding.related) {
        all.push_back({{"file", files.Shown(related.file)},
                       {"line", related.line},
                       {"column", related.column},
                       {"text", related.message}});
    }
    return all;
}

}  // namespace

std::vector<Finding> FindingsOf(const ProjectFiles& files, const TableInput& input,
                                host::Project& project) {
    std::vector<Finding> findings;
    if (!input.isProject) {
        return findings;
    }
    CheckOptions options;
    options.files = files;
    CheckSettings settings = SettingsOf(options);
    const std::vector<std::string>& all = options.files.libraries;
    if (all.size() > files.libraries.size()) {
        ProjectFiles further;
        further.encoding = files.encoding;
        further.libraries.assign(all.begin() + static_cast<std::ptrdiff_t>(files.libraries.size()),
                                 all.end());
        std::vector<host::Report> unheard;
        ReadProject(further, project, unheard);
    }
    settings.options.checkLibraries = false;  // the page has no rows of theirs
    settings.options.reports = &input.reports;
    const Progress progress(host::Say("checking"));
    host::RunChecks(project, settings.options,
                    [&findings](const Finding& finding) { findings.push_back(finding); });
    return findings;
}

void WriteMessages(const TableInput& input, const std::vector<Finding>& findings,
                   const std::function<std::string(ID)>& rowOf, FileNames& files,
                   ReportPage& page) {
    page.Add(R"(,"messages":[)");
    MessageWriter writer(files, page);
    for (const Refusal& refusal : input.refusals) {
        writer.Begin("tables", Severity::kError);
        writer.AddPlace(refusal.file, refusal.line, refusal.column);
        writer.AddObject(refusal.list, refusal.name);
        writer.AddText("text", refusal.reason);
        writer.End(0);
    }
    std::map<std::string, const host::Check*> checks;
    for (const Severity severity : {Severity::kError, Severity::kWarning, Severity::kNote}) {
        for (const Finding& finding : findings) {
            if (finding.severity != severity) {
                continue;
            }
            const std::string code = CodeText(finding.check->code);
            checks.emplace(code, finding.check);
            // What is about an object has its row; where the reader's reports belong their places
            // tell.
            const bool isOfObject = finding.object.GetNumber() != 0;
            writer.Begin(isOfObject || finding.check->run ? "checks" : "reader", severity);
            writer.AddText("code", code);
            writer.AddPlace(finding.file, finding.line, finding.column);
            writer.AddObject(finding.unit, finding.name);
            writer.AddText("text", finding.message);
            if (isOfObject) {
                page.Add(R"(,"target":)");
                page.Add(rowOf(finding.object));
            }
            if (!finding.related.empty()) {
                page.Add(R"(,"related":)");
                page.AddValue(RelatedJson(finding, files));
            }
            writer.End(finding.more);
        }
    }
    Json explanations = Json::object();
    for (const auto& [code, check] : checks) {
        explanations[code] = {{"name", check->name},
                              {"rule", Translated(check->rule)},
                              {"reason", Translated(check->reason)}};
    }
    page.Add(R"(],"checks":)");
    page.AddValue(explanations);
}

}  // namespace lq::tool
