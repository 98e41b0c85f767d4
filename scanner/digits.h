// Numbers of their digits: integers and reals.
//
// Decimal digits are read where they lie in the reader's buffer, four at a time, which one 64-bit
// word holds as four lanes. All four are tested and added up by operations on that word, without a
// branch for each digit: how many digits a number has cannot be foreseen, so that a loop over
// single digits ends with a mispredicted branch for most numbers.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "lq_data/detail/chars.h"

namespace lq::scanner {

constexpr int32_t kSurelyInRange = 9;  // digits of numbers that are all below 2^32
constexpr int32_t kMostDigitsAt = 16;  // DigitsAt reads so many characters, whatever lies there

// The digits of a decimal number. Functions that are not inline take them by value, so that they
// can stay in registers.
struct Digits {
    uint64_t value = 0;     // modulo 2^64
    int32_t count = 0;      // leading zeros included
    bool isBeyond = false;  // 64 bits may not hold the number

    void Add(uint32_t digit) {
        isBeyond |= value > UINT64_MAX / 10 - 1;
        value = value * 10 + digit;
        ++count;
    }
};

// The value of a digit; of the letters A to F, in either case, that as a hex digit.
constexpr uint32_t DigitValue(char16_t c) {
    return (c & 0xFu) + (c >> 6) * 9u;
}

namespace detail {

inline constexpr uint32_t kPowerOfTen[] = {1, 10, 100, 1000, 10000};

constexpr uint64_t InEveryLane(uint64_t character) {
    return character * 0x0001000100010001u;
}

// Up to four digits; `count` tells how many.
inline uint32_t FourDigits(const char16_t* at, int32_t& count) {
    static_assert(std::endian::native == std::endian::little);
    uint64_t lanes;
    std::memcpy(&lanes, at, sizeof(lanes));
    lanes ^= InEveryLane(u'0');  // the digits' values; more than 9 where there is none
    const uint64_t others =
        (((lanes & InEveryLane(0x7FFF)) + InEveryLane(0x7FFF - 9)) | lanes) & InEveryLane(0x8000);
    count = std::countr_zero(others) / 16;
    // The last digit goes to the highest lane, and zeros come in at the lowest. In the highest lane
    // of the product, for four digits a to d, is then 1000 a + 100 b + 10 c + d; no lane below
    // carries into it.
    const int gap = 8 * (4 - count);
    constexpr uint64_t kWeights = 1 + (10ull << 16) + (100ull << 32) + (1000ull << 48);
    return static_cast<uint32_t>(((lanes << gap) << gap) * kWeights >> 48);
}

}  // namespace detail

// The leading digits of a text; when there are kMostDigitsAt, more may follow.
inline Digits DigitsAt(const char16_t* at) {
    Digits digits;
    int32_t count;
    digits.value = detail::FourDigits(at, count);
    digits.count = count;
    while (count == 4 && digits.count < kMostDigitsAt) {
        const uint32_t four = detail::FourDigits(at + digits.count, count);
        digits.value = digits.value * detail::kPowerOfTen[count] + four;
        digits.count += count;
    }
    return digits;
}

// The real number whose digits are `whole`, a point and `fraction`, times 10^`power`, when one
// multiplication or division of two exact doubles gives the nearest double. False for all others:
// those with more than 15 digits, leading zeros included, or with a power beyond 22 once the point
// is moved behind the last digit.
bool ToDoubleExactly(Digits whole, Digits fraction, int32_t power, double& value);

// The number that `length` characters of digits, with point and exponent, stand for: the nearest
// double; infinity above the range and 0 below it. Underscores do not count. Reads the text up to
// the first character that does not fit, and at most 2048 characters.
double ToDouble(const char16_t* text, int32_t length);

}  // namespace lq::scanner
