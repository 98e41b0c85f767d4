// Conversions of digit texts.
#pragma once

#include <cstdint>

namespace lq::scanner {

// Removes every underscore in place; returns the length left.
int32_t RemoveUnderscores(char16_t* text);

// The leading decimal digits as a number modulo 2^32.
uint32_t ToWrappedInt(const char16_t* text);

// The number that `length` characters of digits, with point and exponent, stand for: the nearest
// double; infinity above the range and 0 below it. Reads the text up to the first character that
// does not fit, and at most 2048 characters.
double ToDouble(const char16_t* text, int32_t length);

}  // namespace lq::scanner
