#include "scanner/calendar.h"

#include "lq_data/scanner.h"

namespace lq::scanner {

namespace {

constexpr uint32_t kFirstYear = 1970;
// The year in which 32 bits of day numbers end, and the last day of it that has one.
constexpr uint32_t kLastYear = 11761191;
constexpr uint32_t kLastYearDays = 20;
constexpr uint32_t kFirstWeekday = 4;  // 1970-01-01 was a Thursday

// By leap year and month; month 0 does not exist.
constexpr uint8_t kMonthLength[2][13] = {
    {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
    {0, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
};

const uint8_t* MonthLengths(uint32_t year) {
    return kMonthLength[IsLeapYear(static_cast<int32_t>(year))];
}

// The day number of January 1. The quotients count the leap days before it; all terms are modulo
// 2^32, and the result fits for every year up to the last.
uint32_t FirstDayOf(uint32_t year) {
    return (year - kFirstYear) * 365 - (year - 1901) / 100 + (year - 1601) / 400 +
           (year - 1969) / 4;
}

}  // namespace

uint32_t DateToDays(uint32_t day, uint32_t month, uint32_t year) {
    const uint8_t* lengths = MonthLengths(year);
    uint32_t days = FirstDayOf(year);
    for (uint32_t m = 1; m < month && m <= 12; ++m) {
        days += lengths[m];
    }
    return days + day - 1;
}

bool IsValidDate(uint32_t month, uint32_t day, uint32_t year) {
    if (year < kFirstYear || year > kLastYear || month < 1 || month > 12 || day < 1) {
        return false;
    }
    if (year == kLastYear && (month > 1 || day > kLastYearDays)) {
        return false;
    }
    return day <= MonthLengths(year)[month];
}

}  // namespace lq::scanner

int IsLeapYear(int32_t year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 1 : 0;
}

int ConvertDaysToDate(uint32_t days, uint32_t* day, uint32_t* month, uint32_t* year, int* weekday) {
    using namespace lq::scanner;
    *weekday = static_cast<int>((days % 7 + kFirstWeekday) % 7);
    uint32_t y = kFirstYear;
    uint32_t rest = days;
    do {
        y += rest / 366;
        rest = days - FirstDayOf(y);
    } while (rest >= 366);
    if (rest == 365 && !IsLeapYear(static_cast<int32_t>(y))) {
        ++y;
        rest = 0;
    }
    const uint8_t* lengths = MonthLengths(y);
    uint32_t m = 1;
    while (rest >= lengths[m]) {
        rest -= lengths[m];
        ++m;
    }
    *day = rest + 1;
    *month = m;
    *year = y;
    return 1;
}
