#include "host/check/suppression.h"

#include <algorithm>

#include "host/check/run.h"

namespace lq::host::check {

namespace {

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// "*" stands for any letters, "?" for one; case does not count.
bool Matches(std::string_view pattern, std::string_view text) {
    std::size_t star = pattern.npos;
    std::size_t behindStar = 0;
    std::size_t p = 0;
    for (std::size_t t = 0; t < text.size();) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            behindStar = t;
        } else if (p < pattern.size() &&
                   (pattern[p] == '?' || Lower(pattern[p]) == Lower(text[t]))) {
            ++p;
            ++t;
        } else if (star != pattern.npos) {
            p = star + 1;
            t = ++behindStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == pattern.npos;
}

bool IsPartOfWord(char16_t c) {
    return IsWordCharacter(c) || c == u'-';
}

// Passes "lq: ignore ", with or without the blank in the middle and in any case; false when the
// text has none.
bool PassBeginning(u16string_view& text) {
    constexpr u16string_view kMark = u"lq:";
    constexpr u16string_view kWord = u"ignore ";
    for (; text.size() > kMark.size() + kWord.size(); text.remove_prefix(1)) {
        if (EqualNames(text.substr(0, kMark.size()), kMark)) {
            const u16string_view rest = Trim(text.substr(kMark.size()));
            if (EqualNames(rest.substr(0, kWord.size()), kWord)) {
                text = rest.substr(kWord.size());
                return true;
            }
        }
    }
    return false;
}

}  // namespace

Suppressions::Suppressions(const Run& run, const Store& store) : run_(run), store_(store) {
    ReadAll();
}

// Every comment of the project, most of which are empty.
void Suppressions::ReadAll() {
    const Project& project = run_.project;
    const auto readAll = [this](Sort sort, const auto& records) {
        for (uint32_t i = 0; i < records.size(); ++i) {
            if (*records[i].comment) {
                Read(MakeId(sort, i), records[i].comment);
            }
        }
    };
    readAll(Sort::kDeclaration, project.Declarations());
    readAll(Sort::kPou, project.Pous());
    readAll(Sort::kDataType, project.DataTypes());
    readAll(Sort::kVariableList, project.VariableLists());
    readAll(Sort::kConfiguration, project.Configurations());
    readAll(Sort::kResource, project.Resources());
    readAll(Sort::kTask, project.Tasks());
    readAll(Sort::kProgramInstance, project.ProgramInstances());
    for (uint32_t i = 0; i < project.Pous().size(); ++i) {
        Read(MakeId(Sort::kPou, i), project.Pous()[i].headerComment);
    }
}

// "lq: ignore 8001, unused-input": what follows the list is prose.
void Suppressions::Read(ID object, Text comment) {
    u16string_view text = comment;
    while (PassBeginning(text)) {
        for (bool goesOn = true; goesOn;) {
            text = Trim(text);
            const auto end = std::ranges::find_if_not(text, IsPartOfWord);
            const auto length = static_cast<std::size_t>(end - text.begin());
            Request request{object, Utf8(text.substr(0, length)), {}};
            request.checks = ChecksNamed(request.word);
            byObject_[object.GetNumber()].push_back(requests_.size());
            requests_.push_back(std::move(request));
            text = Trim(text.substr(length));
            goesOn = text.starts_with(u',');
            text.remove_prefix(goesOn ? 1 : 0);
        }
    }
}

bool Suppressions::CoveredBy(ID object, const Finding& finding) {
    const auto found = byObject_.find(object.GetNumber());
    bool isCovered = false;
    if (found != byObject_.end()) {
        for (const std::size_t index : found->second) {
            Request& request = requests_[index];
            const bool isNamed =
                std::ranges::find(request.checks, finding.check) != request.checks.end();
            request.isUsed = request.isUsed || isNamed;
            isCovered = isCovered || isNamed;
        }
    }
    return isCovered;
}

bool Suppressions::FitsPattern(const Finding& finding) const {
    const auto isOfCode = [&](const IgnoredNames& ignored) {
        return ignored.code == finding.check->code;
    };
    const auto& patterns = run_.options.ignored;
    if (std::ranges::none_of(patterns, isOfCode)) {
        return false;
    }
    const std::string unit = store_.UnitOf(finding);
    const std::string name = store_.NameOf(finding);
    const std::string path = unit + (unit.empty() || name.empty() ? "" : ".") + name;
    return std::ranges::any_of(patterns, [&](const IgnoredNames& ignored) {
        return isOfCode(ignored) &&
               (Matches(ignored.pattern, path) || Matches(ignored.pattern, name));
    });
}

bool Suppressions::Cover(const Finding& finding) {
    bool isCovered = FitsPattern(finding);
    for (ID at = finding.object; at != ID() && !byObject_.empty(); at = run_.HolderOf(at)) {
        isCovered = CoveredBy(at, finding) || isCovered;
    }
    return isCovered;
}

void Suppressions::ReportUnused(Run& run) const {
    constexpr uint16_t kCode = 2;
    for (const Request& request : requests_) {
        const bool isWanted = std::ranges::any_of(
            request.checks, [&](const Check* check) { return run.Wants(check->code); });
        if (request.isUsed || !run.IsOwn(request.object) ||
            (!request.checks.empty() && !isWanted)) {
            continue;
        }
        run.Report(
            kCode, request.object,
            request.checks.empty()
                ? Say("the comment is to suppress '{}', but no check is called that", request.word)
                : Say("the comment is to suppress '{}', but there is nothing of it here",
                      request.word));
    }
}

}  // namespace lq::host::check
