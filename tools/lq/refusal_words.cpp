#include "tools/lq/refusal_words.h"

#include <algorithm>
#include <array>

#include "lq_data/detail/chars.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/words/words.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Say;

namespace {

using View = std::u16string_view;

bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

View Trim(View text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsSame(View a, View b) {
    return a.size() == b.size() && chars::CompareNoCase(a.data(), b.data(), a.size()) == 0;
}

bool BeginsWith(View text, View word) {
    return IsSame(text.substr(0, word.size()), word);
}

// Whether the text is one of these names.
template <size_t n>
bool IsOneOf(View text, const std::array<View, n>& names) {
    return std::ranges::any_of(names, [text](View name) { return IsSame(text, name); });
}

// Those that may stand in front of '#' in a constant, as no part of the constants that are read.
constexpr std::array<View, 17> kTypedPrefixes = {
    u"BOOL", u"SINT",  u"INT",  u"DINT", u"LINT",  u"USINT", u"UINT",   u"UDINT",  u"ULINT",
    u"REAL", u"LREAL", u"BYTE", u"WORD", u"DWORD", u"LWORD", u"STRING", u"WSTRING"};

bool IsWhole(View number) {
    number = Trim(number);
    number.remove_prefix(!number.empty() && (number.front() == u'-' || number.front() == u'+'));
    return !number.empty() && std::ranges::all_of(number, IsDigit);
}

// Whether bounds are whole numbers: "1..3, 0..7".
bool AreBounds(View bounds) {
    while (true) {
        const View range = bounds.substr(0, bounds.find(u','));
        const size_t dots = range.find(u"..");
        if (dots == range.npos || !IsWhole(range.substr(0, dots)) ||
            !IsWhole(range.substr(dots + 2))) {
            return false;
        }
        if (range.size() == bounds.size()) {
            return true;
        }
        bounds.remove_prefix(range.size() + 1);
    }
}

// Whether an integer, with a base or without, has more than 32 bits.
bool IsLargeInteger(View text) {
    const bool isNegative = text.starts_with(u'-');
    text.remove_prefix(!text.empty() && (text.front() == u'-' || text.front() == u'+'));
    uint64_t base = 10;
    if (const size_t mark = text.find(u'#'); mark != text.npos) {
        base = IsSame(text.substr(0, mark), u"16")  ? 16
               : IsSame(text.substr(0, mark), u"8") ? 8
                                                    : 2;
        text.remove_prefix(mark + 1);
    }
    uint64_t value = 0;
    for (const char16_t c : text) {
        const auto digit = static_cast<uint64_t>(IsDigit(c) ? c - u'0' : (c | 0x20) - u'a' + 10);
        if (c != u'_' && digit >= base) {
            return false;
        }
        value = c == u'_' ? value : std::min(value * base + digit, uint64_t{1} << 40);
    }
    constexpr uint64_t kLeast = uint64_t{1} << 31;
    return value >> 32 != 0 || (isNegative && value > kLeast);
}

}  // namespace

FaultWords ValueFault(View value) {
    const View text = Trim(value);
    const std::string shown = EncodeUtf8(text);
    for (const View name : {View(u"TRUE"), View(u"FALSE")}) {
        if (IsSame(text, name)) {
            return {Say("the initial value '{}' is to be written {}", shown, EncodeUtf8(name)),
                    true};
        }
    }
    if (IsOneOf(text.substr(0, text.find(u'#')), kTypedPrefixes) && text.find(u'#') != text.npos) {
        return {Say("the initial value '{}' begins with a type, which is not supported: write '{}'",
                    shown, EncodeUtf8(text.substr(text.find(u'#') + 1))),
                true};
    }
    if (IsLargeInteger(text)) {
        return {
            Say("the initial value '{}' needs more than 32 bits, which is not supported", shown),
            true};
    }
    if (host::IsIdentifier(std::u16string(text).c_str())) {
        return {Say("the initial value '{}' is a name, not a constant", shown), true};
    }
    return {Say("the initial value '{}' does not read as one constant", shown)};
}

FaultWords TypeFaults::Of(View type) {
    const View text = Trim(type);
    const std::string shown = EncodeUtf8(text);
    if (BeginsWith(text, u"ARRAY")) {
        return OfArray(text);
    }
    if (BeginsWith(text, u"STRUCT ")) {
        return {Say("a structure is supported only as a data type, which has a name"), true};
    }
    if (BeginsWith(text, u"(")) {
        return {Say("an enumeration is supported only as a data type, which has a name"), true};
    }
    if (BeginsWith(text, u"REF_TO ") || BeginsWith(text, u"POINTER TO ") ||
        BeginsWith(text, u"REFERENCE TO ")) {
        return {Say("references are not supported"), true};
    }
    const View word = Trim(text.substr(0, std::min(text.find_first_of(u"(["), text.size())));
    if (IsSame(word, u"STRING")) {
        return {Say("the length of '{}' is no number", shown), true};
    }
    if (host::IsUnsupportedType(word)) {
        return {Say("the type '{}' is not supported", EncodeUtf8(word)), true};
    }
    if (text.find(u"..") != text.npos) {
        return {Say("a range is supported only in a data type, which has a name"), true};
    }
    return host::IsIdentifier(std::u16string(text).c_str())
               ? FaultWords{UnknownName(shown)}
               : FaultWords{Say("the type '{}' is not supported", shown), true};
}

FaultWords TypeFaults::OfArray(View type) {
    const size_t open = type.find(u'[');
    const size_t close = type.find(u']');
    const size_t of = close == type.npos ? close : close + 1;
    if (open == type.npos || of == type.npos || !BeginsWith(Trim(type.substr(of)), u"OF ")) {
        return {Say("the array type does not read as bounds and an element type")};
    }
    if (!AreBounds(type.substr(open + 1, close - open - 1))) {
        return {Say("the bounds of the array are no numbers"), true};
    }
    const View element = Trim(Trim(type.substr(of)).substr(3));
    if (BeginsWith(element, u"ARRAY")) {
        return {Say("arrays of arrays are not supported, only several bounds in one array"), true};
    }
    const host::Pou* block = project_.GetPou(project_.FindAnyPou(element));
    return block && block->kind == LQ_KIND_FUNCTION_BLOCK
               ? FaultWords{Say("arrays of function blocks are not supported"), true}
           : project_.FindDataType(element) != ID()
               ? FaultWords{Say("arrays of the type '{}' are not supported", EncodeUtf8(element)),
                            true}
               : Of(element);
}

// The same name may be unknown at thousands of places; the search goes through all types.
std::string TypeFaults::UnknownName(const std::string& name) {
    constexpr size_t kMostSearches = 100;
    const auto known = unknown_.find(name);
    if (known != unknown_.end()) {
        return known->second;
    }
    Suggestion nearest(name);
    if (unknown_.size() < kMostSearches) {
        for (const host::DataType& type : project_.DataTypes()) {
            nearest.Consider(EncodeUtf8(type.name));
        }
        for (const host::Pou& pou : project_.Pous()) {
            if (pou.kind == LQ_KIND_FUNCTION_BLOCK) {
                nearest.Consider(EncodeUtf8(pou.name));
            }
        }
    }
    return unknown_[name] = Say("no type is called '{}'", name) + nearest.Text();
}

}  // namespace lq::tool
