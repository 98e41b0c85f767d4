#include "host/symbols/type_text.h"

#include <algorithm>

#include "lq_data/detail/chars.h"
#include "lq_data/types.h"

namespace lq::host::symbols {

namespace {

using std::u16string_view;

u16string_view Trim(u16string_view text) {
    while (!text.empty() && chars::IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && chars::IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsWordCharacter(char16_t c) {
    return chars::IsLetter(c) || chars::IsDigit(c) || c == u'_';
}

// The word that the text begins with; it goes from `text`, with the blanks behind it.
u16string_view TakeWord(u16string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), IsWordCharacter);
    const u16string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text = Trim(text.substr(word.size()));
    return word;
}

std::u16string Upper(u16string_view word) {
    std::u16string upper(word);
    std::ranges::transform(upper, upper.begin(), chars::ToUpper);
    return upper;
}

bool ReadNumber(u16string_view text, int64_t& number) {
    constexpr std::size_t kMostDigits = 18;
    text = Trim(text);
    const bool isNegative = text.starts_with(u'-');
    text.remove_prefix(isNegative || text.starts_with(u'+') ? 1 : 0);
    if (text.empty() || text.size() > kMostDigits ||
        !std::all_of(text.begin(), text.end(), chars::IsDigit)) {
        return false;
    }
    number = 0;
    for (const char16_t c : text) {
        number = number * 10 + (c - u'0');
    }
    number = isNegative ? -number : number;
    return true;
}

// "1..10, -2..2"; nothing when one is not of this form.
std::vector<Bounds> ReadBounds(u16string_view text) {
    constexpr u16string_view kTo = u"..";
    std::vector<Bounds> all;
    for (bool isLast = false; !isLast;) {
        const std::size_t comma = std::min(text.find(u','), text.size());
        isLast = comma == text.size();
        const u16string_view range = text.substr(0, comma);
        text.remove_prefix(isLast ? comma : comma + 1);
        const std::size_t to = range.find(kTo);
        Bounds bounds;
        if (to == u16string_view::npos || !ReadNumber(range.substr(0, to), bounds.lower) ||
            !ReadNumber(range.substr(to + kTo.size()), bounds.upper)) {
            return {};
        }
        all.push_back(bounds);
    }
    return all;
}

// Behind the keyword: "[1..10] OF INT".
TypeText ReadArray(u16string_view text) {
    TypeText type{TypeText::Kind::kArray, {}, {}};
    const std::size_t end = text.find(u']');
    if (!text.starts_with(u'[') || end == u16string_view::npos) {
        return type;
    }
    u16string_view rest = Trim(text.substr(end + 1));
    if (Upper(TakeWord(rest)) == u"OF") {
        type.bounds = ReadBounds(text.substr(1, end - 1));
        type.rest = rest;
    }
    return type;
}

int32_t TypeOf(const std::u16string& word) {
    return word.empty()         ? int32_t{IEC_NO_TYPE}
           : word == u"WSTRING" ? int32_t{IEC_STRING}
                                : int32_t{IecTypeConv().GetId(word.c_str())};
}

}  // namespace

uint64_t Bounds::Count() const {
    return upper < lower ? 0 : static_cast<uint64_t>(upper) - static_cast<uint64_t>(lower) + 1;
}

TypeText ReadTypeText(u16string_view text) {
    using Kind = TypeText::Kind;
    text = Trim(text);
    u16string_view rest = text;
    const std::u16string word = Upper(TakeWord(rest));
    if (word == u"ARRAY") {
        return ReadArray(rest);
    }
    if (word == u"STRUCT") {
        return {Kind::kNamelessStructure, {}, {}};
    }
    const bool isReference = (word == u"REF_TO" || word == u"POINTER") && !rest.empty();
    const int32_t type = TypeOf(word);
    if (isReference || word.starts_with(u"ANY_") || IsElementaryType(type) || IsGenericType(type) ||
        rest.starts_with(u'(')) {
        return {Kind::kElementary, {}, {}};
    }
    return {Kind::kNamed, text, {}};
}

u16string_view WithoutRange(u16string_view text) {
    const u16string_view name = Trim(text.substr(0, text.find(u'(')));
    return name.empty() ? text : name;
}

unsigned BitsOfType(u16string_view text) {
    constexpr struct {
        IEC_TYPE type;
        unsigned bits;
    } kBits[] = {
        {IEC_BOOL, 1},  {IEC_SINT, 8},  {IEC_USINT, 8},  {IEC_BYTE, 8},   {IEC_INT, 16},
        {IEC_UINT, 16}, {IEC_WORD, 16}, {IEC_DINT, 32},  {IEC_UDINT, 32}, {IEC_DWORD, 32},
        {IEC_REAL, 32}, {IEC_LINT, 64}, {IEC_ULINT, 64}, {IEC_LWORD, 64}, {IEC_LREAL, 64},
    };
    const int32_t type = TypeOf(Upper(Trim(text)));
    const auto* row = std::ranges::find_if(kBits, [type](const auto& r) { return r.type == type; });
    return row == std::end(kBits) ? 0 : row->bits;
}

}  // namespace lq::host::symbols
