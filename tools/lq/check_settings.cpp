#include "tools/lq/check_settings.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <glob.h>

#include <ini.h>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::Check;
using host::Say;
using host::Severity;

namespace fs = std::filesystem;

namespace {

constexpr char kFileName[] = ".lq.ini";
constexpr uint64_t kMaxSettings = uint64_t{1} << 20;

std::string_view Trim(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::vector<std::string> SplitAtCommas(std::string_view text) {
    std::vector<std::string> words;
    for (bool isLast = false; !isLast;) {
        const std::size_t comma = std::min(text.find(','), text.size());
        isLast = comma == text.size();
        if (const std::string_view word = Trim(text.substr(0, comma)); !word.empty()) {
            words.emplace_back(word);
        }
        text.remove_prefix(isLast ? comma : comma + 1);
    }
    return words;
}

Severity SeverityCalled(const std::string& word) {
    Severity severity = Severity::kOff;
    if (!host::ReadSeverity(word, severity)) {
        throw CommandError(
            Say("no severity is called '{}'; they are off, note, warning and error", word));
    }
    return severity;
}

host::AddressModel ModelCalled(const std::string& word) {
    using host::AddressModel;
    constexpr std::pair<const char*, AddressModel> kModels[] = {
        {"separate", AddressModel::kSeparate},
        {"byte", AddressModel::kByte},
        {"element", AddressModel::kElement},
    };
    for (const auto& [name, model] : kModels) {
        if (word == name) {
            return model;
        }
    }
    throw CommandError(
        Say("the numbers of addresses are 'separate', 'byte' or 'element', not '{}'", word));
}

host::Edition EditionCalled(const std::string& word) {
    if (word != "2" && word != "3") {
        throw CommandError(Say("the edition of the standard is 2 or 3, not '{}'", word));
    }
    return word == "2" ? host::Edition::kSecond : host::Edition::kThird;
}

Severity FailureCalled(const std::string& word) {
    if (word == "never") {
        return Severity::kOff;
    }
    Severity severity = Severity::kOff;
    if (!host::ReadSeverity(word, severity) || severity == Severity::kOff) {
        throw CommandError(
            Say("what fails is 'error', 'warning', 'note' or 'never', not '{}'", word));
    }
    return severity;
}

unsigned LengthCalled(const std::string& word) {
    unsigned length = 0;
    const char* const end = word.data() + word.size();
    const auto [at, error] = std::from_chars(word.data(), end, length);
    if (error != std::errc() || at != end || length == 0) {
        throw CommandError(Say("'{}' is no number of characters", word));
    }
    return length;
}

bool IsYes(const std::string& word) {
    if (word != "yes" && word != "no") {
        throw CommandError(Say("the value is 'yes' or 'no', not '{}'", word));
    }
    return word == "yes";
}

std::vector<const Check*> ChecksCalled(const std::string& word) {
    std::vector<const Check*> checks = host::ChecksNamed(word);
    if (checks.empty()) {
        std::vector<std::string> known;
        for (const Check* check : host::AllChecks()) {
            known.emplace_back(check->name);
            known.push_back(host::CodeText(check->code));
        }
        throw CommandError(Say("no check has the code or name '{}'", word) +
                           DidYouMean(word, known));
    }
    return checks;
}

// -- The file -------------------------------------------------------------------------------------

// Its lines, for the parser.
struct Lines {
    std::string text;
    std::size_t at = 0;
    uint32_t number = 0;
    bool isTooLong = false;
};

char* NextLine(char* line, int size, void* stream) {
    auto& lines = *static_cast<Lines*>(stream);
    if (lines.at >= lines.text.size() || lines.isTooLong) {
        return nullptr;
    }
    const std::size_t end = std::min(lines.text.find('\n', lines.at), lines.text.size());
    const std::size_t length = end - lines.at;
    ++lines.number;
    lines.isTooLong = length + 2 > static_cast<std::size_t>(size);
    if (lines.isTooLong) {
        return nullptr;
    }
    std::memcpy(line, lines.text.data() + lines.at, length);
    line[length] = 0;
    lines.at = end + 1;
    return line;
}

struct Entry {
    std::string section;
    std::string key;
    std::string value;
    uint32_t line;
};

struct Parsed {
    Lines lines;
    std::vector<Entry> entries;
};

int TakeEntry(void* user, const char* section, const char* key, const char* value) {
    auto& parsed = *static_cast<Parsed*>(user);
    parsed.entries.push_back({section, key, value, parsed.lines.number});
    return 1;
}

std::vector<Entry> ReadEntries(const std::string& path) {
    Parsed parsed;
    parsed.lines.text = ReadInput(path, kMaxSettings);
    if (parsed.lines.text.find('\0') != std::string::npos) {
        throw CommandError(Say("{}: is no text", path));
    }
    const int fault = ini_parse_stream(NextLine, &parsed.lines, TakeEntry, &parsed);
    if (parsed.lines.isTooLong) {
        throw InputError({path, parsed.lines.number}, Say("the line is too long"));
    }
    if (fault != 0) {
        throw InputError({path, fault > 0 ? static_cast<uint32_t>(fault) : 0},
                         Say("the line is no section and no setting"));
    }
    return parsed.entries;
}

// The file nearest above the project; empty when there is none.
std::string FindFile(const CheckOptions& options) {
    std::error_code error;
    fs::path folder = fs::current_path(error);
    const std::string project = options.files.projects.front();
    if (project != "-") {
        const fs::path path = fs::absolute(project, error);
        folder = fs::is_directory(path, error) ? path : path.parent_path();
    }
    for (;; folder = folder.parent_path()) {
        const fs::path file = folder / kFileName;
        if (fs::exists(file, error)) {
            const std::string relative = file.lexically_proximate(fs::current_path(error)).string();
            return relative.starts_with("..") ? file.string() : relative;
        }
        if (folder == folder.parent_path()) {
            return {};
        }
    }
}

// The files of a pattern; those of the project are none of its libraries.
void AddLibraries(const fs::path& folder, const std::string& pattern, ProjectFiles& files) {
    glob_t found = {};
    const fs::path path = folder / pattern;
    const int status = glob(path.c_str(), 0, nullptr, &found);
    const std::vector<std::string> paths(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
    if (status != 0) {
        throw CommandError(Say("no library fits '{}'", pattern));
    }
    std::error_code error;
    for (const std::string& library : paths) {
        const auto isSame = [&](const std::string& other) {
            return other != "-" && fs::equivalent(library, other, error);
        };
        if (std::ranges::none_of(files.projects, isSame) &&
            std::ranges::none_of(files.libraries, isSame)) {
            files.libraries.push_back(library);
        }
    }
}

class FileSettings {
  public:
    FileSettings(CheckOptions& options, CheckSettings& settings, const fs::path& folder)
        : options_(options), settings_(settings), folder_(folder) {}

    void Take(const Entry& entry) {
        if (entry.section.empty()) {
            throw CommandError(Say("the setting '{}' stands in no section", entry.key));
        }
        if (entry.value.empty()) {
            throw CommandError(Say("the setting '{}' has no value", entry.key));
        }
        if (entry.section == "severity") {
            for (const Check* check : ChecksCalled(entry.key)) {
                settings_.options.severity[check->code] = SeverityCalled(entry.value);
            }
        } else if (entry.section == "ignore") {
            for (const Check* check : ChecksCalled(entry.key)) {
                for (std::string& pattern : SplitAtCommas(entry.value)) {
                    settings_.options.ignored.push_back({check->code, std::move(pattern)});
                }
            }
        } else if (entry.section == "check") {
            TakeOption(entry.key, entry.value);
        } else {
            throw CommandError(Say("no section is called '{}'", entry.section) +
                               DidYouMean(entry.section, {"check", "severity", "ignore"}));
        }
    }

  private:
    void TakeOption(const std::string& key, const std::string& value) {
        if (key == "addresses") {
            settings_.options.addresses = ModelCalled(value);
        } else if (key == "edition") {
            settings_.options.edition = EditionCalled(value);
        } else if (key == "only" || key == "ignore") {
            ChecksOf({value});
            if (key == "ignore" || !isOnlyGiven_) {
                (key == "only" ? options_.only : options_.ignore).push_back(value);
            }
        } else if (key == "baseline") {
            if (options_.baseline.empty()) {
                options_.baseline = (folder_ / value).lexically_normal().string();
            }
        } else if (key == "library") {
            AddLibraries(folder_, value, options_.files);
        } else if (key == "closed") {
            settings_.options.closed = IsYes(value);
        } else if (key == "check-libraries") {
            options_.files.checkLibraries = IsYes(value) || options_.files.checkLibraries;
        } else if (key == "fail-on") {
            settings_.failOn = FailureCalled(value);
        } else if (key == "max-name") {
            settings_.options.longestName = LengthCalled(value);
        } else {
            throw CommandError(
                Say("no setting is called '{}'", key) +
                DidYouMean(key, {"addresses", "baseline", "check-libraries", "closed", "edition",
                                 "fail-on", "ignore", "library", "max-name", "only"}));
        }
    }

    CheckOptions& options_;
    CheckSettings& settings_;
    const fs::path folder_;
    const bool isOnlyGiven_ = !options_.only.empty();  // on the command line
};

void ReadFile(CheckOptions& options, CheckSettings& settings) {
    const std::string path = FindFile(options);
    if (path.empty()) {
        return;
    }
    FileSettings file(options, settings, fs::path(path).parent_path());
    for (const Entry& entry : ReadEntries(path)) {
        try {
            file.Take(entry);
        } catch (const CommandError& error) {
            throw InputError({path, entry.line}, error.what());
        }
    }
}

// -- The command line -----------------------------------------------------------------------------

void ReadSeverities(const CheckOptions& options, host::CheckOptions& out) {
    if (!options.only.empty()) {
        const std::vector<const Check*> only = ChecksOf(options.only);
        for (const Check* check : host::AllChecks()) {
            const bool isOne = std::ranges::find(only, check) != only.end();
            const bool isOff =
                check->severity == Severity::kOff && !out.severity.contains(check->code);
            if (!isOne) {
                out.severity[check->code] = Severity::kOff;
            } else if (isOff) {
                out.severity[check->code] = Severity::kNote;  // it was asked for
            }
        }
    }
    for (const Check* check : ChecksOf(options.ignore)) {
        out.severity[check->code] = Severity::kOff;
    }
    for (const std::string& text : options.severity) {
        const std::size_t equals = text.find('=');
        if (equals == text.npos) {
            throw CommandError(Say("'{}' is not of the form CODE=SEVERITY", text));
        }
        const Severity severity = SeverityCalled(text.substr(equals + 1));
        for (const Check* check : ChecksOf({text.substr(0, equals)})) {
            out.severity[check->code] = severity;
        }
    }
}

}  // namespace

std::vector<const Check*> ChecksOf(const std::vector<std::string>& lists) {
    std::vector<const Check*> checks;
    for (const std::string& list : lists) {
        const std::vector<std::string> words = SplitAtCommas(list);
        if (words.empty()) {
            throw CommandError(Say("no check has the code or name '{}'", list));
        }
        for (const std::string& word : words) {
            const auto called = ChecksCalled(word);
            checks.insert(checks.end(), called.begin(), called.end());
        }
    }
    return checks;
}

CheckSettings SettingsOf(CheckOptions& options) {
    CheckSettings settings;
    ReadFile(options, settings);
    ReadSeverities(options, settings.options);
    if (!options.addresses.empty()) {
        settings.options.addresses = ModelCalled(options.addresses);
    }
    if (!options.edition.empty()) {
        settings.options.edition = EditionCalled(options.edition);
    }
    if (!options.failOn.empty()) {
        settings.failOn = FailureCalled(options.failOn);
    }
    if (!options.maxName.empty()) {
        settings.options.longestName = LengthCalled(options.maxName);
    }
    settings.options.closed = settings.options.closed || options.closed;
    settings.options.checkLibraries = options.files.checkLibraries;
    return settings;
}

}  // namespace lq::tool
