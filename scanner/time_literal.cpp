// Durations (T#1d2h3m4s5ms), dates (D#), times of day (TOD#), and dates with time (DT#).
#include <algorithm>
#include <cmath>
#include <limits>

#include "scanner/calendar.h"
#include "scanner/digits.h"
#include "scanner/recogniser.h"

using namespace lq::scanner;

// A number as written in a time literal.
struct lq::scanner::Amount {
    double value = 0;      // unless it is short
    uint32_t wrapped = 0;  // its digits modulo 2^32
    bool isFraction = false;
    bool isShort = false;  // an integer below 10^9

    double Value() const { return isShort ? wrapped : value; }
};

namespace {

// The literal that a word before "#" introduces; TK_ERROR when it introduces none.
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

constexpr double kMsPerDay = 86400000.0;
constexpr double kMsPerHour = 3600000.0;
constexpr double kMsPerMinute = 60000.0;
constexpr double kMsPerSecond = 1000.0;

struct Unit {
    char16_t letter;
    int32_t perDay;
    double ms;
    uint32_t limit;  // of a component that is not the first; days come first or not at all
};

// From the largest to the smallest: an integer component is followed by the next one only.
// Milliseconds are "ms" or "MS".
constexpr Unit kUnits[] = {
    {u'd', 1, kMsPerDay, 0},
    {u'h', 24, kMsPerHour, 23},
    {u'm', 24 * 60, kMsPerMinute, 59},
    {u's', 24 * 60 * 60, kMsPerSecond, 59},
    {u'm', 24 * 60 * 60 * 1000, 1, 999},
};
constexpr const Unit* kMinutes = &kUnits[2];
constexpr const Unit* kMilliseconds = &kUnits[4];

void AddDays(Time& time, int32_t days) {
    time.days =
        static_cast<int32_t>(static_cast<uint32_t>(time.days) + static_cast<uint32_t>(days));
}

// The whole part of a number that is not negative, in 32 bits; false when it does not fit.
bool Truncate(double v, int32_t& whole) {
    if (v > 2147483647.0) {
        return false;
    }
    whole = static_cast<int32_t>(v);
    return true;
}

// The unit that two characters begin, or null. `expected` is the only one allowed, or null in the
// first component.
const Unit* UnitOf(char16_t c, char16_t following, const Unit* expected) {
    const char16_t letter = c | 0x20;  // of a unit's letter, and of no other character
    const bool isMs = letter == u'm' && following == (c == u'm' ? u's' : u'S');
    if (expected) {
        const bool matches = letter == expected->letter && (expected != kMilliseconds || isMs);
        return matches ? expected : nullptr;
    }
    if (isMs) {
        return kMilliseconds;
    }
    const Unit* const unit =
        std::find_if(kUnits, kMilliseconds, [=](const Unit& u) { return u.letter == letter; });
    return unit != kMilliseconds ? unit : nullptr;
}

// False when the component is out of range. An integer that is not the first is less than a day.
bool AddComponent(Time& time, const Unit* unit, bool isFirst, const Amount& amount) {
    const auto& [letter, perDay, ms, limit] = *unit;
    if (!isFirst && (amount.isShort ? amount.wrapped > limit : amount.value > limit)) {
        return false;
    }
    const bool mayBeLong = unit == kMilliseconds || (unit == kMinutes && isFirst);
    if (!amount.isShort && (amount.isFraction || mayBeLong)) {
        int32_t days = 0;
        if (!Truncate(amount.value / perDay, days)) {
            return false;
        }
        AddDays(time, days);
        time.ms += std::fmod(amount.value, perDay) * ms;
        return true;
    }
    auto whole = static_cast<int32_t>(amount.wrapped);
    if (isFirst) {
        AddDays(time, whole / perDay);
        whole %= perDay;
    }
    time.ms += whole * ms;
    return true;
}

}  // namespace

// On a copy, whose fields can stay in registers: nothing has its address.
template <typename Cursor>
[[gnu::flatten]] Found Recogniser<Cursor>::PrefixedLiteral() {
    return Apart().TimeLiteral();
}

template <typename Cursor>
inline Found Recogniser<Cursor>::TimeLiteral() {
    const TOKEN_KIND kind = TimeKindOf(cursor_.TextSoFar(s_.valueBuf));
    Next();
    s_.time = Time();
    switch (kind) {
        case TK_TIME:
            return Duration();
        case TK_DATE_AND_TIME:
            return DateAndTime();
        case TK_DATE:
            return Date();
        case TK_TIME_OF_DAY:
            return TimeOfDay();
        default:
            return Fail(SE_TIME);
    }
}

template <typename Cursor>
inline Found Recogniser<Cursor>::Duration() {
    Time time;
    if (At(u'-')) {
        time.sign = -1;
        Next();
    }
    const Unit* expected = nullptr;
    for (;;) {
        Amount amount;
        if (!IsA(kDecimal) || !PassAmount(amount)) {
            return Fail(SE_TIME);
        }
        const char16_t c = Current();
        const bool mayBeMilliseconds = c == u'm' || c == u'M';
        if (mayBeMilliseconds && !cursor_.CanPeek()) {
            return kElsewhere;
        }
        const Unit* const unit = UnitOf(c, mayBeMilliseconds ? cursor_.Peek() : u'\0', expected);
        if (!unit || !AddComponent(time, unit, !expected, amount)) {
            return Fail(SE_TIME);
        }
        Next();
        if (unit == kMilliseconds) {
            Next();
        }
        if (amount.isFraction || unit == kMilliseconds) {
            break;
        }
        if (At(u'_')) {
            Next();
        } else if (!IsA(kDecimal)) {
            break;
        }
        expected = unit + 1;
    }
    s_.time = time;
    return FinishTime(TK_TIME);
}

// Digits, and a fraction when a point follows; false leaves the character at fault. Leading zeros
// are not collected, so that only numbers beyond every range outgrow the value buffer.
template <typename Cursor>
inline bool Recogniser<Cursor>::PassAmount(Amount& amount) {
    int32_t collected = 0;
    const auto collect = [&](char16_t c) {
        if (collected < kValueLength && (collected > 0 || c != u'0')) {
            s_.valueBuf[collected++] = c;
        }
    };
    const auto from = cursor_.At();
    Digits whole;
    if (!Decimal(whole, collect)) {
        return false;
    }
    if (!At(u'.')) {
        amount.wrapped = static_cast<uint32_t>(whole.value);
        amount.isShort = whole.count <= kSurelyInRange;
        if (!amount.isShort) {
            amount.value = whole.isBeyond ? std::numeric_limits<double>::infinity()
                                          : static_cast<double>(whole.value);
        }
        return true;
    }
    amount.isFraction = true;
    collect(u'.');
    Next();
    Digits fraction;
    if (!IsA(kDecimal) || !Decimal(fraction, collect)) {
        return false;
    }
    double value = 0;  // whose address is taken, so that it is no part of the amount
    if (!ToDoubleExactly(whole, fraction, 0, value)) {
        value = Cursor::kIsWhole ? ToDouble(from, static_cast<int32_t>(cursor_.At() - from))
                                 : ToDouble(s_.valueBuf, collected);
    }
    amount.value = value;
    return true;
}

// A run of digits, which may be empty and then counts as 0. A number of more than 32 bits is taken
// modulo 2^32; as a signed number, of which the sign is dropped.
template <typename Cursor>
inline bool Recogniser<Cursor>::Part(uint32_t& number) {
    Digits digits;
    if (!Decimal(digits)) {
        return false;
    }
    const auto wrapped = static_cast<uint32_t>(digits.value);
    number = wrapped > 0x80000000u ? 0u - wrapped : wrapped;
    return true;
}

template <typename Cursor>
inline bool Recogniser<Cursor>::Separator(char16_t c) {
    if (!At(c)) {
        return false;
    }
    Next();
    return true;
}

template <typename Cursor>
inline bool Recogniser<Cursor>::CalendarDate(bool& isValid) {
    uint32_t year = 0;
    uint32_t month = 0;
    uint32_t day = 0;
    if (!IsA(kDecimal) || !Part(year) || !Separator(u'-') || !Part(month) || !Separator(u'-') ||
        !Part(day)) {
        return false;
    }
    isValid = IsValidDate(month, day, year);
    s_.time.days = static_cast<int32_t>(DateToDays(day, month, year));
    return true;
}

template <typename Cursor>
inline bool Recogniser<Cursor>::ClockTime(uint32_t& minutes) {
    uint32_t hours = 0;
    Amount seconds;
    if (!Part(hours) || !Separator(u':') || !Part(minutes) || !Separator(u':') ||
        !PassAmount(seconds)) {
        return false;
    }
    s_.time.ms = hours * kMsPerHour + minutes * kMsPerMinute + seconds.Value() * kMsPerSecond;
    return true;
}

// Whether the values make sense is judged when the literal has ended, so that a wrong one comes
// back as one error.

template <typename Cursor>
inline Found Recogniser<Cursor>::Date() {
    bool isValid = false;
    if (!CalendarDate(isValid) || !isValid) {
        return Fail(SE_DATE);
    }
    return FinishTime(TK_DATE);
}

template <typename Cursor>
inline Found Recogniser<Cursor>::TimeOfDay() {
    uint32_t minutes = 0;
    if (!IsA(kDecimal) || !ClockTime(minutes) || minutes >= 60 || s_.time.ms > kMsPerDay) {
        return Fail(SE_TIME_OF_DAY);
    }
    return FinishTime(TK_TIME_OF_DAY);
}

template <typename Cursor>
inline Found Recogniser<Cursor>::DateAndTime() {
    bool isValid = false;
    uint32_t minutes = 0;
    if (!CalendarDate(isValid) || !Separator(u'-') || !ClockTime(minutes) || !isValid ||
        s_.time.ms > kMsPerDay) {
        return Fail(SE_DATE_AND_TIME);
    }
    return FinishTime(TK_DATE_AND_TIME);
}

LQ_RECOGNISES(PrefixedLiteral);
