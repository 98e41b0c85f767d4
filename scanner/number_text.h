// Conversions of digit texts. Underscores in them do not count.
#pragma once

#include <cstdint>

#include "scanner/digits.h"

namespace lq::scanner {

// Removes every underscore in place; returns the length left.
int32_t RemoveUnderscores(char16_t* text);

// The leading decimal digits as a number modulo 2^32.
uint32_t ToWrappedInt(const char16_t* text);

// The leading digits of a text.
struct DigitRun {
    uint64_t value = 0;  // modulo 2^64
    int32_t count = 0;   // leading zeros included
};
// `base` is 2, 8, 10 or 16.
DigitRun ReadDigits(const char16_t* text, int32_t length, uint32_t base);

// The number of these digits with a point between them, times 10^power, where one multiplication or
// division gives the nearest double. False for others: more than 15 digits, leading zeros included,
// or a power, digits of the fraction taken off, beyond 22.
bool ToDoubleExactly(const DigitsAtHand& whole, const DigitsAtHand& fraction, int32_t power,
                     double& value);

// The number that `length` characters of digits, with point and exponent, stand for: the nearest
// double; infinity above the range and 0 below it. Reads the text up to the first character that
// does not fit, and at most 2048 characters.
double ToDouble(const char16_t* text, int32_t length);

}  // namespace lq::scanner
