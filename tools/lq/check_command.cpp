#include <functional>
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
host::Project& ReadForChecks(const ProjectFiles& files, std::vector<host::Report>& reports,
                             bool& isWhole) {
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
        isWhole = false;
        host::SetProject(&none);
        return none;
    }
}

host::Findings Check(const CheckOptions& options, host::CheckOptions what, bool& isWhole) {
    std::vector<host::Report> reports;
    const host::Project& project = ReadForChecks(options.files, reports, isWhole);
    what.reports = &reports;
    const Progress progress(Say("checking"));
    return host::Findings(project, what);
}

bool Fails(const CheckResult& result, Severity least) {
    return (least == Severity::kNote && result.notes != 0) ||
           (least != Severity::kOff && least <= Severity::kWarning && result.warnings != 0) ||
           (least != Severity::kOff && result.errors != 0);
}

// The table of checks, or what a word explains.
void Describe(const CheckOptions& options) {
    if (!options.format.empty() && options.format != "text" && options.format != "json") {
        throw CommandError(
            Say("checks are described as text or as JSON, not as '{}'", options.format));
    }
    const bool json = options.json || options.format == "json";
    const std::vector<const host::Check*> checks =
        options.explain.empty() ? host::AllChecks() : ChecksOf({options.explain});
    if (json || options.explain.empty()) {
        PrintChecks(checks, json);
        return;
    }
    for (const host::Check* check : checks) {
        PrintText(check == checks.front() ? "" : "\n");
        PrintExplanation(*check);
    }
}

// Prints to the output file, where one is asked for.
void PrintTo(const std::string& output, const std::function<void()>& print) {
    std::optional<ResultsFile> file;
    if (!output.empty()) {
        file.emplace(output);
    }
    print();
    if (file) {
        file->Finish();
    }
}

}  // namespace

int RunCheck(const CheckOptions& given) {
    CheckOptions options = given;
    const Printer print = PrinterOf(options);
    if (options.list || !options.explain.empty()) {
        PrintTo(options.output, [&] { Describe(options); });
        return kDone;
    }
    if (options.files.projects.empty()) {
        throw CommandError(Say("check: no project was given"));
    }
    RefuseInputAsOutput(options.files, options.output);
    const CheckSettings settings = SettingsOf(options);
    if (!options.baseline.empty()) {
        RefuseInputAsOutput(options.baseline, options.output);
    }
    const std::unordered_set<std::string> known = options.baseline.empty()
                                                      ? std::unordered_set<std::string>()
                                                      : ReadBaseline(options.baseline);
    bool isWhole = true;
    const host::Findings findings = Check(options, settings.options, isWhole);
    CheckResult result(findings, known);
    PrintTo(options.output, [&] { print(result); });
    return !isWhole ? kCannotWork : Fails(result, settings.failOn) ? kInputHasFaults : kDone;
}

}  // namespace lq::tool
