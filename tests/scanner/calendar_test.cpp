#include "scanner/calendar.h"

#include <string>

#include <gtest/gtest.h>

#include "lq_data/scanner.h"
#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

using scanner::DateToDays;
using scanner::IsValidDate;

struct Date {
    uint32_t year = 0, month = 0, day = 0;
};

Date Read(const std::string& text) {
    Date date;
    std::sscanf(text.c_str(), "%u-%u-%u", &date.year, &date.month, &date.day);
    return date;
}

TEST(Calendar, DayNumbersAndDates) {
    for (const Row& row : Rows("scanner/calendar.rows", "days")) {
        SCOPED_TRACE(row.line);
        const Date date = Read(row[1]);
        const auto days = static_cast<uint32_t>(row.Number(0));
        uint32_t day = 0, month = 0, year = 0;
        int weekday = -1;
        EXPECT_EQ(ConvertDaysToDate(days, &day, &month, &year, &weekday), 1);
        EXPECT_TRUE(year == date.year && month == date.month && day == date.day);
        EXPECT_EQ(weekday, row.Number(2));
        EXPECT_EQ(DateToDays(date.day, date.month, date.year), days);
    }
}

TEST(Calendar, EveryDayNumberComesBack) {
    const auto check = [](uint32_t days) {
        uint32_t day = 0, month = 0, year = 0;
        int weekday = 0;
        ConvertDaysToDate(days, &day, &month, &year, &weekday);
        ASSERT_TRUE(IsValidDate(month, day, year)) << days;
        ASSERT_EQ(DateToDays(day, month, year), days);
    };
    for (uint32_t days = 0; days < 300000; ++days) {
        check(days);
        check(0u - 1 - days);
    }
    for (uint32_t days = 0; days < 4294900000u; days += 65521) {
        check(days);
    }
}

TEST(Calendar, ValidDates) {
    for (const Row& row : Rows("scanner/calendar.rows", "dates")) {
        const Date date = Read(row[0]);
        EXPECT_EQ(IsValidDate(date.month, date.day, date.year), row[1] == "yes") << row.line;
    }
    EXPECT_EQ(IsLeapYear(1900) + IsLeapYear(2023) + IsLeapYear(-1), 0);
    EXPECT_EQ(IsLeapYear(2000) + IsLeapYear(2024) + IsLeapYear(-4), 3);
}

TEST(IecString, EscapesAndCutsBetweenCharacters) {
    for (const Row& row : Rows("scanner/calendar.rows", "literals")) {
        const std::u16string source = row.Wide(0);
        const auto size = static_cast<uint32_t>(row.Number(1));
        std::u16string dest(size, u'#');
        EXPECT_EQ(ConvertStringToIECString(source.data(), dest.data(), size,
                                           static_cast<uint32_t>(source.size())),
                  1);
        EXPECT_EQ(dest.c_str(), row.Wide(2)) << row.line;
    }
    // A carriage return is the last character, whatever lies behind the source.
    char16_t literal[8];
    EXPECT_EQ(ConvertStringToIECString(u"\r\n", literal, 8, 1), 1);
    EXPECT_EQ(Utf8(literal), "'$r'");
    char16_t untouched[3] = {u'x', u'y', u'z'};
    EXPECT_EQ(ConvertStringToIECString(untouched, untouched, 2, 1), 0);
    EXPECT_EQ(untouched[0], u'x');
}

}  // namespace
}  // namespace lq::test
