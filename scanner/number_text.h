// Conversions of digit texts. Underscores in them do not count.
#pragma once

#include <cstdint>

#include "scanner/digits.h"

namespace lq::scanner {

// Removes every underscore in place; returns the length left.
int32_t RemoveUnderscores(char16_t* text);

constexpr int32_t kSurelyInRange = 9;  // decimal digits of numbers that are all below 2^32

// The number of these digits with a point between them, times 10^power, where one multiplication or
// division gives the nearest double. False for others: more than 15 digits, leading zeros included,
// or a power, digits of the fraction taken off, beyond 22.
bool ToDoubleExactly(const Digits& whole, const Digits& fraction, int32_t power, double& value);

// The number that `length` characters of digits, with point and exponent, stand for: the nearest
// double; infinity above the range and 0 below it. Reads the text up to the first character that
// does not fit, and at most 2048 characters.
double ToDouble(const char16_t* text, int32_t length);

}  // namespace lq::scanner
