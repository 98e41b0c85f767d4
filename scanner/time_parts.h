// What time literals are made of, read where they lie: their prefixes, numbers, units and sums.
// Inline, which took a fifth off the time of durations.
#pragma once

#include <cmath>
#include <cstdint>
#include <string_view>

#include "lq_data/scanner.h"
#include "scanner/char_classes.h"
#include "scanner/digits.h"
#include "scanner/number_text.h"
#include "scanner/short_token.h"

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
inline const char16_t* ReadShortInteger(const char16_t* at, const DigitsAtHand& digits,
                                        uint32_t& number) {
    const char16_t* const end = at + digits.count;
    if (digits.count == 0 || digits.count > kSurelyInRange || Is(*end, kNumberMark)) {
        return nullptr;
    }
    number = static_cast<uint32_t>(digits.value);
    return end;
}

inline const char16_t* ReadShortAmount(const char16_t* at, Amount& amount) {
    amount = {};
    const DigitsAtHand whole = DigitsAt(at);
    if (const char16_t* const end = ReadShortInteger(at, whole, amount.wrapped)) {
        amount.value = amount.wrapped;
        amount.isShort = true;
        return end;
    }
    const char16_t* end = at + whole.count;
    if (whole.count == 0 || *end != u'.') {
        return nullptr;
    }
    const DigitsAtHand fraction = DigitsAt(end + 1);
    end += 1 + fraction.count;
    amount.isFraction = true;
    const bool isRead =
        fraction.count != 0 && !MayGoOn(*end) && ToDoubleExactly(whole, fraction, 0, amount.value);
    return isRead ? end : nullptr;
}

constexpr double kMsPerDay = 86400000.0;

// Units from the largest to the smallest: an integer component is followed by the next one only.
enum DurationUnit { kNoUnit = -1, kDays, kHours, kMinutes, kSeconds, kMilliseconds };

constexpr int32_t LengthOf(DurationUnit unit) {
    return unit == kMilliseconds ? 2 : 1;
}

// Whether it takes the character behind `c` to know the unit that `c` begins.
constexpr bool MayBeMilliseconds(char16_t c) {
    return c == u'm' || c == u'M';
}

namespace detail {

struct Unit {
    char16_t letter;
    int32_t perDay;
    double ms;
    double limit;  // of every component but the first, which days always are
};

// Milliseconds are "ms" or "MS".
inline constexpr Unit kUnits[] = {
    {u'd', 1, kMsPerDay, 0},
    {u'h', 24, 3600000, 23},
    {u'm', 24 * 60, 60000, 59},
    {u's', 24 * 60 * 60, 1000, 59},
    {u'm', 24 * 60 * 60 * 1000, 1, 999},
};

inline void AddDays(Time& time, int32_t days) {
    time.days =
        static_cast<int32_t>(static_cast<uint32_t>(time.days) + static_cast<uint32_t>(days));
}

// The whole part, not negative, as a 32-bit number; false when it does not fit.
inline bool Truncate(double v, int32_t& whole) {
    if (v > 2147483647.0) {
        return false;
    }
    whole = static_cast<int32_t>(v);
    return true;
}

}  // namespace detail

// The unit that two characters begin, or kNoUnit. `expected` is the only one allowed, or kNoUnit in
// the first component.
inline DurationUnit UnitOf(char16_t c, char16_t following, DurationUnit expected) {
    const char16_t letter = ToLowerAscii(c);
    const bool isMs = letter == u'm' && following == (c == u'm' ? u's' : u'S');
    if (expected != kNoUnit) {
        const bool matches =
            letter == detail::kUnits[expected].letter && (expected != kMilliseconds || isMs);
        return matches ? expected : kNoUnit;
    }
    if (isMs) {
        return kMilliseconds;
    }
    for (const DurationUnit unit : {kDays, kHours, kMinutes, kSeconds}) {
        if (letter == detail::kUnits[unit].letter) {
            return unit;
        }
    }
    return kNoUnit;
}

// False when the component is out of range.
inline bool AddComponent(Time& time, DurationUnit unit, bool isFirst, const Amount& amount) {
    const auto& [letter, perDay, ms, limit] = detail::kUnits[unit];
    if (!isFirst && amount.value > limit) {
        return false;
    }
    const bool mayBeLong = unit == kMilliseconds || (unit == kMinutes && isFirst);
    if (amount.isFraction || (mayBeLong && !amount.isShort)) {
        int32_t days = 0;
        if (!detail::Truncate(amount.value / perDay, days)) {
            return false;
        }
        detail::AddDays(time, days);
        time.ms += std::fmod(amount.value, perDay) * ms;
        return true;
    }
    const auto whole = static_cast<int32_t>(amount.wrapped);
    if (whole >= 0 && whole < perDay) {  // nearly all, and they save a division
        time.ms += whole * ms;
        return true;
    }
    detail::AddDays(time, whole / perDay);
    time.ms += whole % perDay * ms;
    return true;
}

// In milliseconds.
inline double ClockTime(uint32_t hours, uint32_t minutes, double seconds) {
    constexpr double kMsPerHour = 3600000.0;
    constexpr double kMsPerMinute = 60000.0;
    constexpr double kMsPerSecond = 1000.0;
    return hours * kMsPerHour + minutes * kMsPerMinute + seconds * kMsPerSecond;
}

}  // namespace lq::scanner
