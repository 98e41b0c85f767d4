#include "scanner/number_text.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <iterator>
#include <locale.h>
#include <stdlib.h>

#include "frame/chars.h"

namespace lq::scanner {

int32_t RemoveUnderscores(char16_t* text) {
    int32_t kept = 0;
    for (const char16_t* p = text; *p != 0; ++p) {
        if (*p != u'_') {
            text[kept++] = *p;
        }
    }
    text[kept] = 0;
    return kept;
}

uint32_t ToWrappedInt(const char16_t* text) {
    uint32_t value = 0;
    for (; chars::IsDigit(*text); ++text) {
        value = value * 10 + (*text - u'0');
    }
    return value;
}

DigitRun ReadDigits(const char16_t* text, int32_t length, uint32_t base) {
    DigitRun run;
    for (int32_t i = 0; i < length; ++i) {
        const uint32_t c = text[i];
        uint32_t digit = c - u'0';
        if (digit > 9) {
            if (c == u'_') {
                continue;
            }
            digit = (c | 0x20u) - u'a' + 10u;
            if (digit < 10 || digit > 15) {
                break;
            }
        }
        run.value = run.value * base + digit;
        ++run.count;
    }
    return run;
}

namespace {

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int32_t kLargestPower = std::size(kPowersOfTen) - 1;
constexpr int32_t kExactDigits = 15;

// Both numbers are exact in a double, so the one operation rounds as it should.
bool ScaleExactly(uint64_t mantissa, int32_t digits, int32_t power, double& value) {
    if (FLT_EVAL_METHOD != 0 || digits == 0 || digits > kExactDigits || power > kLargestPower ||
        power < -kLargestPower) {
        return false;
    }
    const auto exact = static_cast<double>(mantissa);
    value = power < 0 ? exact / kPowersOfTen[-power] : exact * kPowersOfTen[power];
    return true;
}

bool TextToDoubleExactly(const char16_t* text, int32_t length, double& value) {
    if (length > 2 * kExactDigits) {
        return false;
    }
    uint64_t mantissa = 0;
    int32_t digits = 0;
    int32_t power = 0;
    int32_t perDigit = 0;  // what a digit adds to the power: -1 behind the point
    int32_t i = 0;
    for (; i < length && (text[i] | 0x20) != u'e'; ++i) {
        const char16_t c = text[i];
        if (chars::IsDigit(c)) {
            mantissa = mantissa * 10 + (c - u'0');
            power += perDigit;
            ++digits;
        } else if (c == u'.' && perDigit == 0) {
            perDigit = -1;
        } else if (c != u'_') {
            return false;
        }
    }
    if (i < length) {
        ++i;
        const bool negative = i < length && text[i] == u'-';
        if (negative || (i < length && text[i] == u'+')) {
            ++i;
        }
        const DigitRun exponent = ReadDigits(text + i, length - i, 10);
        if (exponent.count == 0 || exponent.value > 2 * kLargestPower) {
            return false;
        }
        const auto written = static_cast<int32_t>(exponent.value);
        power += negative ? -written : written;
    }
    return ScaleExactly(mantissa, digits, power, value);
}

// from_chars leaves a number beyond the range unset; strtod, under a locale with a decimal point,
// says on which side of the range it lies.
double ToDoubleBeyondRange(const char* text) {
    // The "C" locale is the C library's own; there is nothing to free.
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", locale_t{});
    // The second is for a system whose "C" locale cannot be made, for want of memory.
    return plain != locale_t{} ? strtod_l(text, nullptr, plain) : strtod(text, nullptr);
}

}  // namespace

bool ToDoubleExactly(const DigitsAtHand& whole, const DigitsAtHand& fraction, int32_t power,
                     double& value) {
    const int32_t digits = whole.count + fraction.count;
    if (digits > kExactDigits) {
        return false;
    }
    const auto scale = static_cast<uint64_t>(kPowersOfTen[fraction.count]);
    return ScaleExactly(whole.value * scale + fraction.value, digits, power - fraction.count,
                        value);
}

double ToDouble(const char16_t* text, int32_t length) {
    double value = 0.0;
    if (TextToDoubleExactly(text, length, value)) {
        return value;
    }
    char narrow[2049];
    const int32_t limit = std::min<int32_t>(length, sizeof(narrow) - 1);
    int32_t count = 0;
    for (int32_t i = 0; i < limit; ++i) {
        if (text[i] != u'_') {
            narrow[count++] = chars::IsAscii(text[i]) ? static_cast<char>(text[i]) : '?';
        }
    }
    narrow[count] = 0;
    const auto result = std::from_chars(narrow, narrow + count, value);
    return result.ec == std::errc::result_out_of_range ? ToDoubleBeyondRange(narrow) : value;
}

}  // namespace lq::scanner
