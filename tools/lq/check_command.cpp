#include <optional>
#include <unordered_set>

#include "lq_data/host/text/message.h"
#include "tools/lq/check_output.h"
#include "tools/lq/check_settings.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/input.h"
#include "tools/lq/progress.h"
#include "tools/lq/project_input.h"

namespace lq::tool {

using host::Say;
using host::Severity;

namespace {

using Printer = void (*)(CheckResult&);

Printer PrinterOf(const CheckOptions& options) {
    constexpr std::pair<const char*, Printer> kForms[] = {
        {"text", PrintFindingsAsText},
        {"json", PrintFindingsAsJson},
        {"jsonl", PrintFindingsAsLines},
        {"sarif", PrintFindingsAsSarif},
    };
    const std::string name = !options.format.empty() ? options.format
                             : options.json          ? "json"
                                                     : "text";
    if (options.json && name != "json") {
        throw CommandError(
            Say("the result can be JSON or of the format '{}', not both of them", name));
    }
    for (const auto& [form, printer] : kForms) {
        if (name == form) {
            return printer;
        }
    }
    throw CommandError(Say("no format is called '{}'; they are text, json, jsonl and sarif", name));
}

// The fingerprints of a former result.
std::unordered_set<std::string> ReadBaseline(const std::string& path) {
    const Json document = Json::parse(ReadInput(path, kMaxProject), nullptr, false);
    std::unordered_set<std::string> known;
    bool isResult =
        document.is_object() && document.contains("findings") && document["findings"].is_array();
    for (const Json& finding : isResult ? document["findings"] : Json::array()) {
        const bool isOne = finding.is_object() && finding.contains("fingerprint") &&
                           finding["fingerprint"].is_string();
        isResult = isResult && isOne;
        if (isOne) {
            known.insert(finding["fingerprint"].get<std::string>());
        }
    }
    if (!isResult) {
        throw CommandError(Say("{}: is no result of 'lq check --json'", DisplayName(path)));
    }
    return known;
}

// The project that the files make. Where one was not read to its end, that is what there is to
// report, and half a project is not checked.
host::Project& ReadForChecks(const ProjectFiles& files, std::vector<host::Report>& reports) {
    // As for a translation: the process ends with the command.
    static host::Project& project = *new host::Project;
    static host::Project& none = *new host::Project;
    project.KeepCode();
    try {
        ReadProject(files, project, reports);
        return project;
    } catch (const InputError&) {
        if (reports.empty() || !reports.back().error) {
            throw;  // a library
        }
        host::SetProject(&none);
        return none;
    }
}

host::Findings Check(const CheckOptions& options, host::CheckOptions what) {
    std::vector<host::Report> reports;
    const host::Project& project = ReadForChecks(options.files, reports);
    what.reports = &reports;
    const Progress progress(Say("checking"));
    return host::Findings(project, what);
}

bool Fails(const CheckResult& result, Severity least) {
    return (least == Severity::kNote && result.notes != 0) ||
           (least != Severity::kOff && least <= Severity::kWarning && result.warnings != 0) ||
           (least != Severity::kOff && result.errors != 0);
}

int Explain(const std::string& word, bool json) {
    const std::vector<const host::Check*> checks = ChecksCalled(word);
    if (json) {
        PrintChecks(checks, true);
        return kDone;
    }
    for (const host::Check* check : checks) {
        PrintText(check == checks.front() ? "" : "\n");
        PrintExplanation(*check);
    }
    return kDone;
}

}  // namespace

int RunCheck(const CheckOptions& given) {
    CheckOptions options = given;
    const Printer print = PrinterOf(options);
    if (options.list) {
        PrintChecks(host::AllChecks(), options.json);
        return kDone;
    }
    if (!options.explain.empty()) {
        return Explain(options.explain, options.json);
    }
    if (options.files.projects.empty()) {
        throw CommandError(Say("check: no project was given"));
    }
    RefuseInputAsOutput(options.files, options.output);
    if (!options.baseline.empty()) {
        RefuseInputAsOutput(options.baseline, options.output);
    }
    CheckSettings settings = SettingsOf(options);
    const std::unordered_set<std::string> known = options.baseline.empty()
                                                      ? std::unordered_set<std::string>()
                                                      : ReadBaseline(options.baseline);
    const host::Findings findings = Check(options, settings.options);
    CheckResult result(findings, known);
    std::optional<ResultsFile> file;
    if (!options.output.empty()) {
        file.emplace(options.output);
    }
    print(result);
    if (file) {
        file->Finish();
    }
    return Fails(result, settings.failOn) ? kInputHasFaults : kDone;
}

}  // namespace lq::tool
