#include "scanner/short_time.h"

#include "frame/chars.h"
#include "scanner/calendar.h"
#include "scanner/digits.h"
#include "scanner/time_parts.h"

namespace lq::scanner {
namespace {

constexpr char16_t kEnd = Scanner::kEndOfInput;

// These return the character behind what they read, or null.

const char16_t* ReadDuration(const char16_t* at, Time& time) {
    if (*at == u'-') {
        time.sign = -1;
        ++at;
    }
    DurationUnit expected = kNoUnit;
    for (;;) {
        Amount amount;
        at = ReadShortAmount(at, amount);
        if (!at || *at == kEnd || at[1] == kEnd) {
            return nullptr;
        }
        const DurationUnit unit = UnitOf(at[0], at[1], expected);
        if (unit == kNoUnit || !AddComponent(time, unit, expected == kNoUnit, amount)) {
            return nullptr;
        }
        at += LengthOf(unit);
        if (amount.isFraction || unit == kMilliseconds) {
            return at;
        }
        if (*at == u'_') {
            ++at;
        } else if (!chars::IsDigit(*at)) {
            return at;
        }
        expected = static_cast<DurationUnit>(unit + 1);
    }
}

const char16_t* ReadInteger(const char16_t* at, uint32_t& number) {
    return ReadShortInteger(at, DigitsAt(at), number);
}

// Integers with the same character between them.
const char16_t* ReadIntegers(const char16_t* at, char16_t separator, uint32_t* numbers, int count) {
    at = ReadInteger(at, numbers[0]);
    for (int i = 1; i < count && at; ++i) {
        at = *at == separator ? ReadInteger(at + 1, numbers[i]) : nullptr;
    }
    return at;
}

const char16_t* ReadClock(const char16_t* at, uint32_t& minutes, Time& time) {
    uint32_t parts[2];
    at = ReadIntegers(at, u':', parts, 2);
    Amount seconds;
    at = at && *at == u':' ? ReadShortAmount(at + 1, seconds) : nullptr;
    if (!at) {
        return nullptr;
    }
    minutes = parts[1];
    time.ms = ClockTime(parts[0], minutes, seconds.value);
    return time.ms <= kMsPerDay ? at : nullptr;
}

const char16_t* ReadTimeOfDay(const char16_t* at, Time& time) {
    uint32_t minutes = 0;
    at = ReadClock(at, minutes, time);
    return minutes < 60 ? at : nullptr;
}

const char16_t* ReadDate(const char16_t* at, Time& time) {
    uint32_t parts[3];
    at = ReadIntegers(at, u'-', parts, 3);
    if (!at) {
        return nullptr;
    }
    const auto [year, month, day] = parts;
    time.days = static_cast<int32_t>(DateToDays(day, month, year));
    return IsValidDate(month, day, year) ? at : nullptr;
}

const char16_t* ReadDateAndTime(const char16_t* at, Time& time) {
    uint32_t minutes = 0;
    at = ReadDate(at, time);
    return at && *at == u'-' ? ReadClock(at + 1, minutes, time) : nullptr;
}

const char16_t* ReadLiteral(TOKEN_KIND kind, const char16_t* at, Time& time) {
    switch (kind) {
        case TK_TIME:
            return ReadDuration(at, time);
        case TK_TIME_OF_DAY:
            return ReadTimeOfDay(at, time);
        case TK_DATE:
            return ReadDate(at, time);
        case TK_DATE_AND_TIME:
            return ReadDateAndTime(at, time);
        default:
            return nullptr;
    }
}

}  // namespace

const char16_t* ShortTime(const char16_t* word, const char16_t* hash, TOKEN_KIND& kind,
                          Time& time) {
    kind = TimeKindOf({word, static_cast<size_t>(hash - word)});
    time = Time();
    const char16_t* const end = ReadLiteral(kind, hash + 1, time);
    return end && *end != kEnd ? end : nullptr;
}

}  // namespace lq::scanner
