#include "scanner/time_parts.h"

#include <cmath>

#include "scanner/char_classes.h"
#include "scanner/number_text.h"
#include "scanner/short_token.h"

namespace lq::scanner {
namespace {

struct Unit {
    char16_t letter;
    int32_t perDay;
    double ms;
    double limit;  // of every component but the first
};

constexpr Unit kUnits[] = {
    {u'd', 1, kMsPerDay, 0},  // always first
    {u'h', 24, 3600000, 23},        {u'm', 24 * 60, 60000, 59},
    {u's', 24 * 60 * 60, 1000, 59}, {u'm', 24 * 60 * 60 * 1000, 1, 999},  // "ms" or "MS"
};

char16_t ToLowerAscii(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
}

void AddDays(Time& time, int32_t days) {
    time.days =
        static_cast<int32_t>(static_cast<uint32_t>(time.days) + static_cast<uint32_t>(days));
}

// The whole part, not negative, as a 32-bit number; false when it does not fit.
bool Truncate(double v, int32_t& whole) {
    if (v > 2147483647.0) {
        return false;
    }
    whole = static_cast<int32_t>(v);
    return true;
}

}  // namespace

TOKEN_KIND TimeKindOf(std::u16string_view word) {
    struct Prefix {
        std::u16string_view text;
        TOKEN_KIND kind;
    };
    static constexpr Prefix kPrefixes[] = {
        {u"T", TK_TIME},
        {u"t", TK_TIME},
        {u"TIME", TK_TIME},
        {u"time", TK_TIME},
        {u"TOD", TK_TIME_OF_DAY},
        {u"tod", TK_TIME_OF_DAY},
        {u"TIME_OF_DAY", TK_TIME_OF_DAY},
        {u"time_of_day", TK_TIME_OF_DAY},
        {u"D", TK_DATE},
        {u"d", TK_DATE},
        {u"DATE", TK_DATE},
        {u"date", TK_DATE},
        {u"DT", TK_DATE_AND_TIME},
        {u"dt", TK_DATE_AND_TIME},
        {u"DATE_AND_TIME", TK_DATE_AND_TIME},
        {u"date_and_time", TK_DATE_AND_TIME},
    };
    for (const Prefix& prefix : kPrefixes) {
        if (prefix.text == word) {
            return prefix.kind;
        }
    }
    return TK_ERROR;
}

const char16_t* ReadShortInteger(const char16_t* at, const DigitsAtHand& digits, uint32_t& number) {
    const char16_t* const end = at + digits.count;
    if (digits.count == 0 || digits.count > kSurelyInRange || Is(*end, kNumberMark)) {
        return nullptr;
    }
    number = static_cast<uint32_t>(digits.value);
    return end;
}

const char16_t* ReadShortAmount(const char16_t* at, Amount& amount) {
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

DurationUnit UnitOf(char16_t c, char16_t following, DurationUnit expected) {
    const char16_t letter = ToLowerAscii(c);
    const bool isMs = letter == u'm' && following == (c == u'm' ? u's' : u'S');
    if (expected != kNoUnit) {
        const bool matches =
            letter == kUnits[expected].letter && (expected != kMilliseconds || isMs);
        return matches ? expected : kNoUnit;
    }
    if (isMs) {
        return kMilliseconds;
    }
    for (const DurationUnit unit : {kDays, kHours, kMinutes, kSeconds}) {
        if (letter == kUnits[unit].letter) {
            return unit;
        }
    }
    return kNoUnit;
}

bool AddComponent(Time& time, DurationUnit unit, bool isFirst, const Amount& amount) {
    const auto& [letter, perDay, ms, limit] = kUnits[unit];
    if (!isFirst && amount.value > limit) {
        return false;
    }
    const bool mayBeLong = unit == kMilliseconds || (unit == kMinutes && isFirst);
    if (amount.isFraction || (mayBeLong && !amount.isShort)) {
        int32_t days = 0;
        if (!Truncate(amount.value / perDay, days)) {
            return false;
        }
        AddDays(time, days);
        time.ms += std::fmod(amount.value, perDay) * ms;
        return true;
    }
    const auto whole = static_cast<int32_t>(amount.wrapped);
    if (whole >= 0 && whole < perDay) {  // nearly all, and they save a division
        time.ms += whole * ms;
        return true;
    }
    AddDays(time, whole / perDay);
    time.ms += whole % perDay * ms;
    return true;
}

double ClockTime(uint32_t hours, uint32_t minutes, double seconds) {
    constexpr double kMsPerHour = 3600000.0;
    constexpr double kMsPerMinute = 60000.0;
    constexpr double kMsPerSecond = 1000.0;
    return hours * kMsPerHour + minutes * kMsPerMinute + seconds * kMsPerSecond;
}

}  // namespace lq::scanner
