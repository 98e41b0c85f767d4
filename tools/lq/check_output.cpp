#include "tools/lq/check_output.h"

#include <filesystem>

#include "lq_data/host/text/message.h"
#include "tools/lq/escape.h"
#include "tools/lq/messages.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

using host::Check;
using host::CodeText;
using host::Finding;
using host::Say;
using host::Translated;

namespace {

std::string MessageOf(const Finding& finding) {
    return finding.more == 0 ? finding.message
                             : Say("{} (and {} more)", finding.message, finding.more);
}

std::string Counted(std::size_t count, const char* one, const char* many) {
    return count == 1 ? Say(one) : Say(many, count);
}

void PrintCounts(const CheckResult& result) {
    std::string text =
        Counted(result.errors, host::Message("1 error"), host::Message("{} errors")) + ", " +
        Counted(result.warnings, host::Message("1 warning"), host::Message("{} warnings")) + ", " +
        Counted(result.notes, host::Message("1 note"), host::Message("{} notes"));
    if (result.suppressed != 0) {
        text += Say("; {} suppressed", result.suppressed);
    }
    if (result.known != 0) {
        text += Say("; {} of the baseline", result.known);
    }
    PrintMessage(text);
}

Json PlaceOf(const std::string& file, uint32_t line, uint32_t column) {
    const auto orNull = [](uint32_t number) { return number == 0 ? Json() : Json(number); };
    return {{"file", file}, {"line", orNull(line)}, {"column", orNull(column)}};
}

Json CountsOf(const CheckResult& result) {
    return {{"errors", result.errors},
            {"warnings", result.warnings},
            {"notes", result.notes},
            {"suppressed", result.suppressed},
            {"known", result.known}};
}

// Lines of text, in strings that stay: there may be one for each variable of a project.
class TextLines {
  public:
    void Print(const Finding& finding) {
        if (finding.check != check_) {
            check_ = finding.check;
            code_ = " [" + CodeText(check_->code) + ' ' + check_->name + "]\n";
        }
        Begin(finding.file, finding.line, finding.column, finding.severity);
        AppendOneLine(line_, finding.more == 0 ? finding.message : MessageOf(finding));
        PrintText(line_.append(code_));
    }
    void Print(const host::RelatedPlace& related) {
        Begin(related.file, related.line, related.column, host::Severity::kNote);
        AppendOneLine(line_, related.message);
        PrintText(line_.append(1, '\n'));
    }

  private:
    void Begin(const std::string& file, uint32_t line, uint32_t column, host::Severity severity) {
        if (file != file_ || shown_.empty()) {
            file_ = file;
            shown_ = OneLine(file);
        }
        place_ = shown_;
        for (const uint32_t number : {line, column}) {
            if (number != 0) {
                place_.append(1, ':').append(std::to_string(number));
            }
        }
        place_ += ':';
        line_ = Bold(Stream::kResults, place_);
        line_.append(1, ' ').append(Translated(NameOf(severity))).append(": ");
    }

    const Check* check_ = nullptr;
    std::string code_;  // what stands behind the words of that check
    std::string file_;
    std::string shown_;
    std::string place_;
    std::string line_;
};

// -- SARIF ----------------------------------------------------------------------------------------

// The file as a reference that stays the same on other machines: relative to the folder that the
// command runs in where it lies there.
std::string UriOf(const std::string& file) {
    const std::filesystem::path path(file);
    std::error_code error;
    std::string text = path.lexically_normal().string();
    if (path.is_absolute()) {
        const std::string relative =
            path.lexically_relative(std::filesystem::current_path(error)).string();
        const bool isBelow = !error && !relative.empty() && !relative.starts_with("..");
        text = isBelow ? relative : "file://" + text;
    }
    std::string uri;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                             (c >= '0' && c <= '9') ||
                             std::string_view("-._~/").find(c) != std::string_view::npos ||
                             (c == ':' && text.starts_with("file://") && uri.size() < 7);
        constexpr char kDigits[] = "0123456789ABCDEF";
        uri +=
            isPlain ? std::string(1, c) : std::string{'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return uri;
}

// Most findings are of the file of the one before.
const std::string& SameUri(const std::string& file) {
    static std::string last;
    static std::string uri;
    if (file != last) {
        uri = UriOf(file);
        last = file;
    }
    return uri;
}

Json LocationOf(const std::string& file, uint32_t line, uint32_t column) {
    Json place = {{"artifactLocation", {{"uri", SameUri(file)}}}};
    if (line != 0) {
        place["region"]["startLine"] = line;
    }
    if (line != 0 && column != 0) {
        place["region"]["startColumn"] = column;
    }
    return {{"physicalLocation", std::move(place)}};
}

const char* LevelOf(host::Severity severity) {
    return severity == host::Severity::kOff ? "none" : NameOf(severity);
}

Json RuleOf(const Check& check) {
    return {{"id", CodeText(check.code)},
            {"name", check.name},
            {"shortDescription", {{"text", Translated(check.rule)}}},
            {"fullDescription", {{"text", Translated(check.reason)}}},
            {"defaultConfiguration",
             {{"enabled", check.severity != host::Severity::kOff},
              {"level", LevelOf(check.severity)}}}};
}

Json ResultOf(const Finding& finding, std::size_t rule) {
    Json result = {{"ruleId", CodeText(finding.check->code)},
                   {"ruleIndex", rule},
                   {"level", LevelOf(finding.severity)},
                   {"message", {{"text", MessageOf(finding)}}},
                   {"locations", Json::array()}};
    if (!finding.file.empty()) {
        result["locations"].push_back(LocationOf(finding.file, finding.line, finding.column));
    }
    for (const host::RelatedPlace& related : finding.related) {
        Json place = LocationOf(related.file, related.line, related.column);
        place["message"]["text"] = related.message;
        result["relatedLocations"].push_back(std::move(place));
    }
    result["partialFingerprints"]["lqFinding/v1"] = finding.fingerprint;
    return result;
}

// -- The table ------------------------------------------------------------------------------------

Json RowOf(const Check& check) {
    return {{"code", CodeText(check.code)},
            {"name", check.name},
            {"severity", NameOf(check.severity)},
            {"rule", Translated(check.rule)},
            {"reason", Translated(check.reason)},
            {"wrong", check.wrong},
            {"right", check.right}};
}

void PrintExample(const std::string& title, const char* example) {
    if (!*example) {
        return;
    }
    PrintLine("\n" + title);
    std::string line;
    for (const char* c = example;; ++c) {
        if (*c == '\n' || *c == 0) {
            PrintLine("    " + line);
            line.clear();
        } else {
            line += *c;
        }
        if (*c == 0) {
            return;
        }
    }
}

}  // namespace

Json ToJson(const Finding& finding) {
    Json document = {{"code", CodeText(finding.check->code)},
                     {"name", finding.check->name},
                     {"severity", NameOf(finding.severity)}};
    document.update(PlaceOf(finding.file, finding.line, finding.column));
    document["unit"] = finding.unit;
    document["object"] = finding.name;
    document["message"] = finding.message;
    document["more"] = finding.more;
    document["fingerprint"] = finding.fingerprint;
    document["related"] = Json::array();
    for (const host::RelatedPlace& related : finding.related) {
        Json place = PlaceOf(related.file, related.line, related.column);
        place["message"] = related.message;
        document["related"].push_back(std::move(place));
    }
    return document;
}

void CheckResult::ForEach(const host::TakeFinding& take) {
    findings_.ForEach([&](const Finding& finding) {
        const bool isUnread = finding.check->code == 1;  // no former result knows what is in it
        if (!isUnread && baseline_.contains(finding.fingerprint)) {
            ++known;
            return;
        }
        std::size_t& count = finding.severity == host::Severity::kError     ? errors
                             : finding.severity == host::Severity::kWarning ? warnings
                                                                            : notes;
        ++count;
        take(finding);
    });
}

void PrintFindingsAsText(CheckResult& result) {
    TextLines lines;
    result.ForEach([&lines](const Finding& finding) {
        lines.Print(finding);
        for (const host::RelatedPlace& related : finding.related) {
            lines.Print(related);
        }
    });
    PrintCounts(result);
}

void PrintFindingsAsJson(CheckResult& result) {
    PrintText(OpenJsonPiece(0, NewDocument()) + ",\n" + JsonIndent(1) + "\"findings\": ");
    JsonList list(1);
    result.ForEach([&list](const Finding& finding) {
        list.Next();
        PrintText(JsonPiece(2, ToJson(finding)));
    });
    list.End();
    PrintText(",\n" + JsonIndent(1) + "\"counts\": " + JsonPiece(1, CountsOf(result)) + "\n}\n");
}

void PrintFindingsAsLines(CheckResult& result) {
    result.ForEach([](const Finding& finding) { PrintLine(JsonText(ToJson(finding), -1)); });
}

void PrintFindingsAsSarif(CheckResult& result) {
    const std::vector<const Check*> checks = host::AllChecks();
    Json driver = {{"name", "lq"}, {"version", LQ_VERSION}, {"rules", Json::array()}};
    for (const Check* check : checks) {
        driver["rules"].push_back(RuleOf(*check));
    }
    const Json document = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                           {"version", "2.1.0"}};
    const Json run = {{"tool", {{"driver", std::move(driver)}}},
                      {"columnKind", "unicodeCodePoints"}};
    PrintText(OpenJsonPiece(0, document) + ",\n" + JsonIndent(1) + "\"runs\": [\n" + JsonIndent(2) +
              OpenJsonPiece(2, run) + ",\n" + JsonIndent(3) + "\"results\": ");
    JsonList results(3);
    result.ForEach([&](const Finding& finding) {
        const auto at = std::ranges::find(checks, finding.check);
        results.Next();
        PrintText(JsonPiece(4, ResultOf(finding, static_cast<std::size_t>(at - checks.begin()))));
    });
    results.End();
    PrintText("\n" + JsonIndent(2) + "}\n" + JsonIndent(1) + "]\n}\n");
}

void PrintChecks(const std::vector<const Check*>& checks, bool json) {
    Json rows = Json::array();
    for (const Check* check : checks) {
        rows.push_back(RowOf(*check));
    }
    if (json) {
        Json document = NewDocument();
        document["checks"] = std::move(rows);
        PrintJson(document);
    } else {
        for (std::size_t i = 0; i < checks.size(); ++i) {
            rows[i]["severity"] = Translated(NameOf(checks[i]->severity));
        }
        Print(TableOf("", {{"code"}, {"name"}, {"severity"}, {"rule"}}, rows));
    }
}

void PrintExplanation(const Check& check) {
    const std::string heading = CodeText(check.code) + " " + check.name;
    const std::string_view severity = Translated(NameOf(check.severity));
    PrintLine(Bold(Stream::kResults, heading) + " (" + std::string(severity) + ")\n");
    constexpr uint32_t kJapanese = 932;
    const char* const stop = host::LanguageCodePage() == kJapanese ? "\u3002" : ".";
    PrintProse(std::string(Translated(check.rule)) + stop);
    PrintProse(std::string(Translated(check.reason)) + stop);
    PrintExample(Say("Wrong:"), check.wrong);
    PrintExample(Say("Right:"), check.right);
}

}  // namespace lq::tool
