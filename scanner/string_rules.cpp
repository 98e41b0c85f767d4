// The settings that string literals depend on, and a raw text as the text of a string literal: the
// inverse of how the scanner reads one.
#include "scanner/string_rules.h"

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_useradapt.h"
#include "lq_data/scanner.h"

namespace lq::scanner {

constinit CommaFlag commaEndsString;

int32_t AskNulEscape() {
    LQ_OPTION_REPLY reply = {0, 0};
    ProcessUserDLLMessage(nullptr, LQ_WM_USER, LQ_ASK_NUL_ESCAPE,
                          reinterpret_cast<intptr_t>(&reply));
    return reply.option;
}

}  // namespace lq::scanner

namespace {

// The letter that stands for `c` behind "$", or 0 when `c` stands for itself. The literal is
// written in single quotes, so that a double quote needs no escape.
char16_t EscapeLetter(char16_t c) {
    const lq::scanner::Escape* const escape = c != u'"' ? lq::scanner::FindEscapeFor(c) : nullptr;
    return escape ? escape->letter : u'\0';
}

// Whether a character is written as it is. The control characters U+0000 to U+001F and U+007F to
// U+009F are written as hex escapes, except U+0091 and U+0092: a text that was taken over byte by
// byte from code page 1252 has its single quotation marks there.
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
