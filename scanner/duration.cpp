// Durations (T#1d2h3m4s5ms), and the prefixes of all time literals.
#include <cmath>
#include <string_view>

#include "scanner/number_text.h"
#include "scanner/recogniser.h"

using namespace lq::chars;
using lq::scanner::DigitsAtHand;

namespace {

constexpr double kMsPerDay = 86400000.0;

// Units from the largest to the smallest: an integer component is followed by the next one only.
struct Unit {
    char16_t letter;
    int32_t perDay;
    double limit;  // of every component but the first

    constexpr double Ms() const { return kMsPerDay / perDay; }
};

enum UnitIndex { kDays, kHours, kMinutes, kSeconds, kMilliseconds, kUnitCount };

constexpr Unit kUnits[kUnitCount] = {
    {u'd', 1, 0},  // always first
    {u'h', 24, 23},
    {u'm', 24 * 60, 59},
    {u's', 24 * 60 * 60, 59},
    {u'm', 24 * 60 * 60 * 1000, 999},  // "ms" or "MS"
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

void Recogniser::PrefixedLiteral() {
    struct Prefix {
        std::u16string_view text;
        void (Recogniser::*literal)();
    };
    static constexpr Prefix kPrefixes[] = {
        {u"TIME", &Recogniser::Duration},
        {u"time", &Recogniser::Duration},
        {u"T", &Recogniser::Duration},
        {u"t", &Recogniser::Duration},
        {u"DATE_AND_TIME", &Recogniser::DateAndTime},
        {u"date_and_time", &Recogniser::DateAndTime},
        {u"DT", &Recogniser::DateAndTime},
        {u"dt", &Recogniser::DateAndTime},
        {u"DATE", &Recogniser::Date},
        {u"date", &Recogniser::Date},
        {u"D", &Recogniser::Date},
        {u"d", &Recogniser::Date},
        {u"TIME_OF_DAY", &Recogniser::TimeOfDay},
        {u"time_of_day", &Recogniser::TimeOfDay},
        {u"TOD", &Recogniser::TimeOfDay},
        {u"tod", &Recogniser::TimeOfDay},
    };
    const std::u16string_view text(s_.valueBuf, static_cast<size_t>(TextSoFar(0)));
    Next();
    s_.time = Time();
    for (const Prefix& prefix : kPrefixes) {
        if (prefix.text == text) {
            return (this->*prefix.literal)();
        }
    }
    Fail(SE_TIME);
}

// Stores digits in the value buffer. Leading zeros of an integer part are dropped, so that only
// numbers beyond every range outgrow the buffer.
bool Recogniser::CollectDigits(bool isIntegerPart) {
    for (;;) {
        while (IsDigit(Current())) {
            if (!isIntegerPart || s_.stringLength > 0 || !At(u'0')) {
                Store(Current());
            }
            Next();
        }
        if (!At(u'_')) {
            return true;
        }
        Next();
        if (!IsDigit(Current())) {
            return false;
        }
    }
}

bool Recogniser::ShortInteger(const DigitsAtHand& digits, uint32_t& number) {
    constexpr int32_t kMost = 9;
    const char16_t* const end = reader_.At() + digits.count;
    if (digits.count == 0 || digits.count > kMost ||
        lq::scanner::Is(*end, lq::scanner::kNumberMark)) {
        return false;
    }
    reader_.MoveTo(end);
    number = static_cast<uint32_t>(digits.value);
    return true;
}

bool Recogniser::ShortFraction(const DigitsAtHand& whole, double& number) {
    const char16_t* end = reader_.At() + whole.count;
    if (whole.count == 0 || *end != u'.') {
        return false;
    }
    const DigitsAtHand fraction = lq::scanner::DigitsAt(end + 1);
    end += 1 + fraction.count;
    if (fraction.count == 0 || *end == u'_' || *end == kEnd ||
        !lq::scanner::ToDoubleExactly(whole, fraction, 0, number)) {
        return false;
    }
    reader_.MoveTo(end);
    return true;
}

bool Recogniser::CollectNumber(Amount& amount) {
    const DigitsAtHand digits = lq::scanner::DigitsAt(reader_.At());
    amount = {};
    if (ShortInteger(digits, amount.wrapped)) {
        amount.value = amount.wrapped;
        amount.isShort = true;
        return true;
    }
    if (ShortFraction(digits, amount.value)) {
        amount.isFraction = true;
        return true;
    }
    s_.stringLength = 0;
    if (!CollectDigits(true)) {
        return false;
    }
    if (At(u'.')) {
        amount.isFraction = true;
        Store(u'.');
        Next();
        if (!IsDigit(Current()) || !CollectDigits(false)) {
            return false;
        }
    }
    s_.valueBuf[s_.stringLength] = 0;
    amount.value = lq::scanner::ToDouble(s_.valueBuf, s_.stringLength);
    amount.wrapped = lq::scanner::ToWrappedInt(s_.valueBuf);
    return true;
}

// The unit that the current character begins, or -1. `expected` is the only one allowed, or -1 in
// the first component.
int Recogniser::UnitAtHand(int expected) {
    const char16_t c = Current();
    const char16_t letter = ToLowerAscii(c);
    const bool isMs = letter == u'm' && reader_.Peek() == (c == u'm' ? u's' : u'S');
    if (expected >= 0) {
        const bool matches =
            letter == kUnits[expected].letter && (expected != kMilliseconds || isMs);
        return matches ? expected : -1;
    }
    if (isMs) {
        return kMilliseconds;
    }
    for (int unit = kDays; unit < kMilliseconds; ++unit) {
        if (letter == kUnits[unit].letter) {
            return unit;
        }
    }
    return -1;
}

// False when it is out of range.
bool Recogniser::AddComponent(int unit, bool isFirst, const Amount& amount) {
    const int32_t perDay = kUnits[unit].perDay;
    if (!isFirst && amount.value > kUnits[unit].limit) {
        return false;
    }
    const bool mayBeLong = unit == kMilliseconds || (unit == kMinutes && isFirst);
    if (amount.isFraction || (mayBeLong && !amount.isShort)) {
        int32_t days = 0;
        if (!Truncate(amount.value / perDay, days)) {
            return false;
        }
        AddDays(s_.time, days);
        s_.time.ms += std::fmod(amount.value, perDay) * kUnits[unit].Ms();
        return true;
    }
    const auto whole = static_cast<int32_t>(amount.wrapped);
    AddDays(s_.time, whole / perDay);
    s_.time.ms += (whole % perDay) * kUnits[unit].Ms();
    return true;
}

void Recogniser::Duration() {
    if (At(u'-')) {
        s_.time.sign = -1;
        Next();
    }
    int expected = -1;
    for (;;) {
        Amount amount;
        if (!IsDigit(Current()) || !CollectNumber(amount)) {
            return Fail(SE_TIME);
        }
        const int unit = UnitAtHand(expected);
        if (unit < 0 || !AddComponent(unit, expected < 0, amount)) {
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
        } else if (!IsDigit(Current())) {
            break;
        }
        expected = unit + 1;
    }
    FinishTime(TK_TIME);
}
