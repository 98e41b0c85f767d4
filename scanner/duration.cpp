// Durations (T#1d2h3m4s5ms), and the prefixes of all time literals.
#include "scanner/number_text.h"
#include "scanner/recogniser.h"

using namespace lq::chars;
using namespace lq::scanner;

void Recogniser::PrefixedLiteral() {
    const TOKEN_KIND kind = TimeKindOf({s_.valueBuf, static_cast<size_t>(TextSoFar(0))});
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

bool Recogniser::CollectNumber(Amount& amount) {
    if (const char16_t* const end = ReadShortAmount(reader_.At(), amount)) {
        reader_.MoveTo(end);
        return true;
    }
    amount = {};
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
    amount.value = ToDouble(s_.valueBuf, s_.stringLength);
    amount.wrapped = ToWrappedInt(s_.valueBuf);
    return true;
}

void Recogniser::Duration() {
    if (At(u'-')) {
        s_.time.sign = -1;
        Next();
    }
    DurationUnit expected = kNoUnit;
    for (;;) {
        Amount amount;
        if (!IsDigit(Current()) || !CollectNumber(amount)) {
            return Fail(SE_TIME);
        }
        const char16_t c = Current();
        const DurationUnit unit =
            UnitOf(c, MayBeMilliseconds(c) ? reader_.Peek() : u'\0', expected);
        if (unit == kNoUnit || !AddComponent(s_.time, unit, expected == kNoUnit, amount)) {
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
        expected = static_cast<DurationUnit>(unit + 1);
    }
    FinishTime(TK_TIME);
}
