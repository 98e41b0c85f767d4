#include <algorithm>
#include <cctype>

#include "host/check/checks.h"
#include "lq_data/host/text/message.h"

namespace lq::host {

namespace {

constexpr check::Rows (*kFamilies[])() = {
    check::ReaderRows,  check::NameRows,    check::TypeRows,        check::ValueRows,
    check::AddressRows, check::SectionRows, check::AccessRows,      check::UnitRows,
    check::TaskRows,    check::LabelRows,   check::VariableUseRows, check::NameUseRows,
    check::LiteralRows, check::DrawingRows, check::StatementRows,
};

constexpr struct {
    Severity severity;
    const char* name;
} kSeverities[] = {
    {Severity::kOff, Message("off")},
    {Severity::kNote, Message("note")},
    {Severity::kWarning, Message("warning")},
    {Severity::kError, Message("error")},
};

bool IsDigits(std::string_view text) {
    return !text.empty() && text.size() <= 4 && text.find_first_not_of("0123456789") == text.npos;
}

unsigned NumberOf(std::string_view digits) {
    unsigned number = 0;
    for (const char c : digits) {
        number = number * 10 + static_cast<unsigned>(c - '0');
    }
    return number;
}

}  // namespace

const char* NameOf(Severity severity) noexcept {
    return kSeverities[static_cast<std::size_t>(severity)].name;
}

bool ReadSeverity(std::string_view name, Severity& severity) noexcept {
    for (const auto& row : kSeverities) {
        if (row.name == name) {
            severity = row.severity;
            return true;
        }
    }
    return false;
}

std::vector<const Check*> AllChecks() {
    std::vector<const Check*> all;
    for (const auto family : kFamilies) {
        for (const Check& row : family()) {
            all.push_back(&row);
        }
    }
    std::ranges::sort(all, {}, &Check::code);
    return all;
}

const Check* check::FindRow(uint16_t code) noexcept {
    for (const auto family : kFamilies) {
        const Rows rows = family();
        const auto row = std::ranges::find(rows, code, &Check::code);
        if (row != rows.end()) {
            return &*row;
        }
    }
    return nullptr;
}

std::vector<const Check*> ChecksNamed(std::string_view word) {
    const bool isFamily = word.size() == 4 && IsDigits(word.substr(0, 1)) &&
                          (word.substr(1) == "xxx" || word.substr(1) == "XXX");
    std::vector<const Check*> named = AllChecks();
    std::erase_if(named, [&](const Check* check) {
        return isFamily         ? check->code / 1000u != NumberOf(word.substr(0, 1))
               : IsDigits(word) ? check->code != NumberOf(word)
                                : check->name != word;
    });
    return named;
}

std::string CodeText(uint16_t code) {
    const std::string digits = std::to_string(code);
    return std::string(4 - std::min<std::size_t>(4, digits.size()), '0') + digits;
}

}  // namespace lq::host
