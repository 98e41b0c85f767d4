// Dates (D#), times of day (TOD#), and both together (DT#).
#include "scanner/calendar.h"
#include "scanner/number_text.h"
#include "scanner/recogniser.h"

using namespace lq::chars;
using namespace lq::scanner;

// A run of digits, possibly empty, which counts as 0. A number beyond 32 bits wraps and loses its
// sign.
bool Recogniser::Part(uint32_t& number) {
    const char16_t* const at = reader_.At();
    if (const char16_t* const end = ReadShortInteger(at, DigitsAt(at), number)) {
        reader_.MoveTo(end);
        return true;
    }
    s_.stringLength = 0;
    if (!CollectDigits(true)) {
        return false;
    }
    s_.valueBuf[s_.stringLength] = 0;
    const uint32_t wrapped = ToWrappedInt(s_.valueBuf);
    number = wrapped > 0x80000000u ? 0u - wrapped : wrapped;
    return true;
}

bool Recogniser::Separator(char16_t c) {
    if (!At(c)) {
        return false;
    }
    Next();
    return true;
}

bool Recogniser::CalendarDate(bool& isValid) {
    uint32_t year = 0;
    uint32_t month = 0;
    uint32_t day = 0;
    if (!IsDigit(Current()) || !Part(year) || !Separator(u'-') || !Part(month) ||
        !Separator(u'-') || !Part(day)) {
        return false;
    }
    isValid = IsValidDate(month, day, year);
    s_.time.days = static_cast<int32_t>(DateToDays(day, month, year));
    return true;
}

bool Recogniser::ClockTime(uint32_t& minutes) {
    uint32_t hours = 0;
    Amount seconds;
    if (!Part(hours) || !Separator(u':') || !Part(minutes) || !Separator(u':') ||
        !CollectNumber(seconds)) {
        return false;
    }
    s_.time.ms = lq::scanner::ClockTime(hours, minutes, seconds.value);
    return true;
}

// Whether the values make sense is judged when the literal has ended, so that a wrong one comes
// back as one error.

void Recogniser::Date() {
    bool isValid = false;
    if (!CalendarDate(isValid) || !isValid) {
        return Fail(SE_DATE);
    }
    FinishTime(TK_DATE);
}

void Recogniser::TimeOfDay() {
    uint32_t minutes = 0;
    if (!IsDigit(Current()) || !ClockTime(minutes) || minutes >= 60 || s_.time.ms > kMsPerDay) {
        return Fail(SE_TIME_OF_DAY);
    }
    FinishTime(TK_TIME_OF_DAY);
}

void Recogniser::DateAndTime() {
    bool isValid = false;
    uint32_t minutes = 0;
    if (!CalendarDate(isValid) || !Separator(u'-') || !ClockTime(minutes) || !isValid ||
        s_.time.ms > kMsPerDay) {
        return Fail(SE_DATE_AND_TIME);
    }
    FinishTime(TK_DATE_AND_TIME);
}
