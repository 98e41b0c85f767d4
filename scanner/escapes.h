// What "$" and a letter stand for in a character string.
#pragma once

#include "scanner/char_classes.h"

namespace lq::scanner {

// One character, or a second one where it is not 0.
struct Escape {
    char16_t letter;  // in lower case
    char16_t stored[2];
};

// Null for a character that makes none with "$" alone.
inline const Escape* FindEscape(char16_t c) {
    static constexpr Escape kEscapes[] = {
        {u'$', {u'$', 0}},      {u'\'', {u'\'', 0}}, {u'"', {u'"', 0}},  {u'l', {u'\n', 0}},
        {u'n', {u'\r', u'\n'}}, {u'p', {u'\f', 0}},  {u'r', {u'\r', 0}}, {u't', {u'\t', 0}},
    };
    const char16_t lower = ToLowerAscii(c);
    for (const Escape& escape : kEscapes) {
        if (escape.letter == lower) {
            return &escape;
        }
    }
    return nullptr;
}

}  // namespace lq::scanner
