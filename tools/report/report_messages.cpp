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
        page_.Add(R"(,"line":)" + (line > 0 ? std::to_string(line) : "null") + R"(,"column":)" +
                  (column > 0 ? std::to_string(column) : "null"));
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

std::unique_ptr<host::Findings> FindingsOf(const ProjectFiles& files, TableInput& input,
                                           host::Project& project) {
    if (!input.isProject) {
        return nullptr;
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
        further.checkLibraries = options.files.checkLibraries;
        ReadProject(further, project, input.reports);
    }
    settings.options.reports = &input.reports;
    const Progress progress(host::Say("checking"));
    return std::make_unique<host::Findings>(project, settings.options);
}

void WriteMessages(const TableInput& input, const host::Findings* findings,
                   const std::function<std::string(ID)>& rowOf, FileNames& files,
                   ReportPage& page) {
    page.Add(R"(,"messages":[)");
    MessageWriter writer(files, page);
    std::map<uint16_t, const host::Check*> checks;
    for (const Refusal& refusal : input.refusals) {
        checks.emplace(refusal.check->code, refusal.check);
        writer.Begin("tables", Severity::kError);
        writer.AddText("code", CodeText(refusal.check->code));
        writer.AddPlace(refusal.file, refusal.line, refusal.column);
        writer.AddObject(refusal.list, refusal.name);
        writer.AddText("text", refusal.reason);
        writer.End(0);
    }
    const auto write = [&](const Finding& finding) {
        checks.emplace(finding.check->code, finding.check);
        // What is about an object has its row; where the reader's reports belong their places
        // tell.
        const bool isOfObject = finding.object.GetNumber() != 0;
        writer.Begin(isOfObject || finding.check->run ? "checks" : "reader", finding.severity);
        writer.AddText("code", CodeText(finding.check->code));
        writer.AddPlace(finding.file, finding.line, finding.column);
        writer.AddObject(finding.unit, finding.name);
        writer.AddText("text",
                       finding.line == 0 ? files.ShownIn(finding.message) : finding.message);
        if (isOfObject) {
            page.Add(R"(,"target":)");
            page.Add(rowOf(finding.object));
        }
        if (!finding.related.empty()) {
            page.Add(R"(,"related":)");
            page.AddValue(RelatedJson(finding, files));
        }
        writer.End(finding.more);
    };
    for (const Severity severity : {Severity::kError, Severity::kWarning, Severity::kNote}) {
        if (findings) {
            findings->ForEach(severity, write);
        }
    }
    Json explanations = Json::object();
    for (const auto& [code, check] : checks) {
        explanations[CodeText(code)] = {{"name", check->name},
                                        {"rule", Translated(check->rule)},
                                        {"reason", Translated(check->reason)}};
    }
    page.Add(R"(],"checks":)");
    page.AddValue(explanations);
}

}  // namespace lq::tool
