// What time literals are made of, read where they lie: their prefixes, numbers, units and sums.
#pragma once

#include <cstdint>
#include <string_view>

#include "lq_data/scanner.h"
#include "scanner/digits.h"

namespace lq::scanner {

// The literal that a word before "#" introduces; TK_ERROR when it introduces none.
TOKEN_KIND TimeKindOf(std::u16string_view word);

// A number as written in a time literal.
struct Amount {
    double value = 0;
    uint32_t wrapped = 0;  // its digits modulo 2^32
    bool isFraction = false;
    bool isShort = false;  // an integer below 10^9
};

// The next two read a number of few digits and no underscore, which took a third off the time of a
// literal. They return the character behind it; null, and nothing is read, for all others.
const char16_t* ReadShortInteger(const char16_t* at, const DigitsAtHand& digits, uint32_t& number);
const char16_t* ReadShortAmount(const char16_t* at, Amount& amount);

// Units from the largest to the smallest: an integer component is followed by the next one only.
enum DurationUnit { kNoUnit = -1, kDays, kHours, kMinutes, kSeconds, kMilliseconds };

constexpr int32_t LengthOf(DurationUnit unit) {
    return unit == kMilliseconds ? 2 : 1;
}

// Whether it takes the character behind `c` to know the unit that `c` begins.
constexpr bool MayBeMilliseconds(char16_t c) {
    return c == u'm' || c == u'M';
}

// The unit that two characters begin, or kNoUnit. `expected` is the only one allowed, or kNoUnit in
// the first component.
DurationUnit UnitOf(char16_t c, char16_t following, DurationUnit expected);

// False when the component is out of range.
bool AddComponent(Time& time, DurationUnit unit, bool isFirst, const Amount& amount);

constexpr double kMsPerDay = 86400000.0;

// In milliseconds.
double ClockTime(uint32_t hours, uint32_t minutes, double seconds);

}  // namespace lq::scanner
