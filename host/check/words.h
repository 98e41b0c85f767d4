// Pieces of IEC text.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "lq_data/detail/chars.h"

namespace lq::host::check {

using std::u16string_view;

inline u16string_view Trim(u16string_view text) {
    while (!text.empty() && chars::IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && chars::IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

inline bool EqualNames(u16string_view a, u16string_view b) {
    return a.size() == b.size() && chars::CompareNoCase(a.data(), b.data(), a.size()) == 0;
}

inline std::u16string Upper(u16string_view word) {
    std::u16string upper(word);
    std::ranges::transform(upper, upper.begin(), chars::ToUpper);
    return upper;
}

inline bool IsWordCharacter(char16_t c) {
    return chars::IsLetter(c) || chars::IsDigit(c) || c == u'_';
}

// Whether the text is one name, whatever the language makes of it.
inline bool IsName(u16string_view text) {
    return !text.empty() && !chars::IsDigit(text.front()) &&
           std::ranges::all_of(text, IsWordCharacter);
}

// The word that the text begins with; it goes from `text`, with the blanks behind it.
inline u16string_view TakeWord(u16string_view& text) {
    const auto end = std::ranges::find_if_not(text, IsWordCharacter);
    const u16string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text = Trim(text.substr(word.size()));
    return word;
}

// The position of the first of `wanted` that stands in no bracket and no string; the text's size
// when there is none.
std::size_t FindOutside(u16string_view text, u16string_view wanted);

// What stands before the first comma outside brackets and strings; it goes from `text`, with the
// comma.
u16string_view TakeItem(u16string_view& text);

}  // namespace lq::host::check
