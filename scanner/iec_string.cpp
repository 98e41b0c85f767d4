// A raw text as the text of a string literal: the inverse of how the scanner reads one.
#include "frame/chars.h"
#include "lq_data/scanner.h"
#include "scanner/process_state.h"

namespace {

// The letter of the two-character escape of `c`, or 0 when it has none.
char16_t EscapeLetter(char16_t c) {
    switch (c) {
        case u'\t':
            return u't';
        case u'\n':
            return u'l';
        case u'\f':
            return u'p';
        case u'\r':
            return u'r';
        case u'$':
        case u'\'':
            return c;
        default:
            return 0;
    }
}

// Controls stand as hex escapes, but for the two of the upper range that double as quotation marks
// in code page 1252.
bool IsPlain(char16_t c) {
    return c >= 0x20 && (c < 0x7F || c > 0x9F || c == 0x91 || c == 0x92);
}

constexpr char16_t kHexDigits[] = u"0123456789abcdef";

}  // namespace

int ConvertStringToIECString(const char16_t* source, char16_t* dest, uint32_t destSize,
                             uint32_t sourceLength) {
    if (destSize < 3) {
        return 0;
    }
    const bool nulAllowed = destSize > 3 && lq::scanner::AskNulEscape() != 0;
    for (uint32_t i = 0; i < destSize; ++i) {
        dest[i] = 0;
    }
    uint32_t p = 0;
    dest[p++] = u'\'';
    const uint32_t end = destSize - 2;  // the closing quote and the terminator
    for (uint32_t i = 0; i < sourceLength && p < end; ++i) {
        const char16_t c = source[i];
        char16_t letter = EscapeLetter(c);
        if (letter != 0) {
            if (end - p < 2) {
                break;
            }
            if (c == u'\r' && i + 1 < sourceLength && source[i + 1] == u'\n') {
                letter = u'n';
                ++i;
            }
            dest[p++] = u'$';
            dest[p++] = letter;
        } else if (IsPlain(c)) {
            dest[p++] = c;
        } else {
            if (end - p < 3) {
                break;
            }
            dest[p++] = u'$';
            dest[p++] = kHexDigits[(c >> 4) & 0xF];
            dest[p++] = kHexDigits[c & 0xF];
            if (c == 0 && !nulAllowed) {
                break;
            }
        }
    }
    dest[p] = u'\'';
    return 1;
}
