// Based integers and reals by the short way: without underscores, read where they lie, which took
// half of their time.
#pragma once

#include "lq_data/scanner.h"
#include "scanner/char_classes.h"
#include "scanner/number_text.h"

namespace lq::scanner {

constexpr int32_t kMaxDecimalDigits = 10;
constexpr int32_t kSurelyInRange = 9;  // decimal digits of numbers that are all below 2^32

// A token that was recognised where it lies.
struct Short {
    TOKEN_KIND kind = TK_ERROR;
    uint16_t code = 0;  // of an operator or a keyword
    int32_t length = 0;
    uint32_t integer = 0;
    double real = 0;
};

inline bool MayGoOn(char16_t c) {
    return c == u'_' || c == Scanner::kEndOfInput;
}

// Of letters, too.
inline uint32_t DigitValue(char16_t c) {
    return (c & 0xFu) + (c >> 6) * 9u;
}

inline bool ShortBased(const char16_t* at, Short& s) {
    struct Base {
        char16_t prefix[3];
        int32_t prefixLength;
        uint32_t base;
        unsigned digitClass;
        int32_t inRange;  // digits of numbers that are surely in range
    };
    static constexpr Base kBases[] = {
        {u"16", 2, 16, kHex, 8}, {u"8#", 1, 8, kOctal, 10}, {u"2#", 1, 2, kBinary, 32}};
    for (const Base& base : kBases) {
        const char16_t* const digits = at + base.prefixLength + 1;
        if (at[0] != base.prefix[0] || at[1] != base.prefix[1] || digits[-1] != u'#') {
            continue;
        }
        const char16_t* end = digits;
        for (; Is(*end, base.digitClass); ++end) {
            s.integer = s.integer * base.base + DigitValue(*end);
        }
        if (end == digits || end - digits > base.inRange || MayGoOn(*end)) {
            return false;
        }
        s.kind = TK_BASED_INTEGER;
        s.length = static_cast<int32_t>(end - at);
        return true;
    }
    return false;
}

inline bool ShortReal(const char16_t* at, const DigitsAtHand& whole, Short& s) {
    const char16_t* end = at + whole.count;
    if (*end != u'.') {
        return false;
    }
    const DigitsAtHand fraction = DigitsAt(end + 1);
    end += 1 + fraction.count;
    DigitsAtHand exponent;
    bool isNegative = false;
    if (*end == u'e' || *end == u'E') {
        isNegative = end[1] == u'-';
        end += isNegative || end[1] == u'+' ? 2 : 1;
        exponent = DigitsAt(end);
        end += exponent.count;
        if (exponent.count == 0 || exponent.count > kSurelyInRange) {
            return false;
        }
    }
    if (fraction.count == 0 || fraction.count == kMostDigitsAt || whole.count == kMostDigitsAt ||
        MayGoOn(*end)) {
        return false;
    }
    const auto written = static_cast<int32_t>(exponent.value);
    s.kind = TK_REAL;
    s.length = static_cast<int32_t>(end - at);
    if (!ToDoubleExactly(whole, fraction, isNegative ? -written : written, s.real)) {
        s.real = ToDouble(at, s.length);
    }
    return true;
}

}  // namespace lq::scanner
