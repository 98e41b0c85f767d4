// Reals of their digits.
#pragma once

#include <cstdint>

#include "scanner/digits.h"

namespace lq::scanner {

// The number of these digits with a point between them, times 10^power, where one multiplication or
// division gives the nearest double. False for others: more than 15 digits, leading zeros included,
// or a power, digits of the fraction taken off, beyond 22.
bool ToDoubleExactly(const Digits& whole, const Digits& fraction, int32_t power, double& value);

// The number that `length` characters of digits, with point and exponent, stand for: the nearest
// double; infinity above the range and 0 below it. Underscores do not count. Reads the text up to
// the first character that does not fit, and at most 2048 characters.
double ToDouble(const char16_t* text, int32_t length);

}  // namespace lq::scanner
