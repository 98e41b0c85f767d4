// What stands in a string literal, beside the grammar (scanner/string_literal.h): the escapes, read
// in both directions, and the two settings that change how a literal is read.
#pragma once

#include <cstdint>
#include <utility>

#include "frame/per_thread.h"
#include "scanner/char_classes.h"

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

// The escape that `c` makes behind "$"; null when it makes none (two hex digits are no entry here).
inline const Escape* FindEscape(char16_t c) {
    const char16_t lower = ToLowerAscii(c);
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

// Whether the user adapter allows the string escape "$00"; asked anew on every call.
int32_t AskNulEscape();

// One flag for all scanners of a thread. The identifier B_COMMENT sets it: the next comma inside a
// string literal then ends that literal. That comma resets it, and so does the construction of any
// scanner.
class alignas(8) CommaFlag {
  public:
    void Set(bool isSet) noexcept { isSet_ = isSet; }
    // Resets it and tells whether it was set.
    bool Take() noexcept { return std::exchange(isSet_, false); }

  private:
    bool isSet_ = false;
};
LQ_THREAD_LOCAL extern CommaFlag commaEndsString;

}  // namespace lq::scanner
