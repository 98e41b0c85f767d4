// What stands in a string literal, beside the grammar (scanner/string_literal.h): the escapes, read
// in both directions, and the two settings of the process that change how a literal is read.
#pragma once

#include <atomic>
#include <cstdint>

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

// One flag for all scanners of the process. The identifier B_COMMENT sets it: the next comma inside
// a string literal then ends that literal. That comma resets it, and so does the construction of
// any scanner. It is atomic, so that scanners may work on several threads: which of them meets the
// comma is then chance. Nothing else depends on the order, so relaxed access is enough.
class CommaFlag {
  public:
    bool IsSet() const noexcept { return isSet_.load(std::memory_order_relaxed); }
    void Set(bool isSet) noexcept { isSet_.store(isSet, std::memory_order_relaxed); }
    // Resets it and tells whether it was set. When several threads call, one of them is told so.
    bool Take() noexcept { return IsSet() && isSet_.exchange(false, std::memory_order_relaxed); }

  private:
    std::atomic<bool> isSet_ = false;
};
extern CommaFlag commaEndsString;

}  // namespace lq::scanner
