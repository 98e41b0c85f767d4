// The escapes of string literals, for who reads literals or writes them.
#pragma once

namespace lq::scanner {

// "$" and a character: what the literal then holds.
struct Escape {
    char16_t letter;     // the character behind "$"; of a letter the lower case
    char16_t stored[2];  // one character, or two when the second is not 0
};
inline constexpr Escape kEscapes[] = {
    {u'$', {u'$', 0}},      {u'\'', {u'\'', 0}}, {u'"', {u'"', 0}},  {u'l', {u'\n', 0}},
    {u'n', {u'\r', u'\n'}}, {u'p', {u'\f', 0}},  {u'r', {u'\r', 0}}, {u't', {u'\t', 0}},
};

// The escape that `c` makes behind "$"; null when it makes none (two hex digits, which stand for
// the character with that number, are no entry here).
inline const Escape* FindEscape(char16_t c) {
    const auto lower = static_cast<char16_t>(c >= u'A' && c <= u'Z' ? c + (u'a' - u'A') : c);
    for (const Escape& escape : kEscapes) {
        if (escape.letter == lower) {
            return &escape;
        }
    }
    return nullptr;
}

// The escape for one character of a text; null when it has none.
inline const Escape* FindEscapeFor(char16_t stored) {
    for (const Escape& escape : kEscapes) {
        if (escape.stored[0] == stored && escape.stored[1] == 0) {
            return &escape;
        }
    }
    return nullptr;
}

}  // namespace lq::scanner
