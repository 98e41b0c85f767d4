#include "scanner/calendar.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "lq_data/scanner.h"
#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

using scanner::DateToDays;
using scanner::IsValidDate;

TEST(Calendar, DayNumbersAndDates) {
    // clang-format off
    const struct { uint32_t days, year, month, day; int weekday; } kCases[] = {
        {0, 1970, 1, 1, 4}, {364, 1970, 12, 31, 4}, {365, 1971, 1, 1, 5}, {10957, 2000, 1, 1, 6},
        {11016, 2000, 2, 29, 2}, {11017, 2000, 3, 1, 3}, {11322, 2000, 12, 31, 0},
        {11323, 2001, 1, 1, 1}, {47540, 2100, 2, 28, 0}, {47541, 2100, 3, 1, 1},
        {4294967295u, 11761191, 1, 20, 0},
    };
    // clang-format on
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.days);
        uint32_t day = 0, month = 0, year = 0;
        int weekday = -1;
        EXPECT_EQ(ConvertDaysToDate(c.days, &day, &month, &year, &weekday), 1);
        EXPECT_EQ(std::tie(year, month, day, weekday), std::tie(c.year, c.month, c.day, c.weekday));
        EXPECT_EQ(DateToDays(c.day, c.month, c.year), c.days);
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
    // clang-format off
    const struct { uint32_t year, month, day; bool valid; } kCases[] = {
        {2000, 2, 29, true}, {1900, 2, 28, false}, {2100, 2, 29, false}, {2001, 4, 31, false},
        {2001, 12, 31, true}, {1969, 12, 31, false}, {1970, 1, 1, true}, {1970, 0, 1, false},
        {1970, 13, 1, false}, {1970, 1, 0, false}, {11761191, 1, 20, true},
        {11761191, 1, 21, false}, {11761191, 2, 1, false}, {11761192, 1, 1, false},
    };
    // clang-format on
    for (const auto& c : kCases) {
        EXPECT_EQ(IsValidDate(c.month, c.day, c.year), c.valid)
            << c.year << "-" << c.month << "-" << c.day;
    }
    EXPECT_EQ(IsLeapYear(1900) + IsLeapYear(2023) + IsLeapYear(-1), 0);
    EXPECT_EQ(IsLeapYear(2000) + IsLeapYear(2024) + IsLeapYear(-4), 3);
}

TEST(IecString, EscapesAndCutsBetweenCharacters) {
    const struct {
        std::u16string source;
        uint32_t destSize;
        const char16_t* literal;
    } kCases[] = {
        // clang-format off
        {u"It's", 20, u"'It$'s'"}, {u"\t\n\f\r\r\n$\"", 40, u"'$t$l$p$r$n$$\"'"},
        {u"\u0001\u001F ~\u007F\u0080\u0090\u0091\u0092\u0093\u009F\u00A0\u4E2D", 60,
         u"'$01$1f ~$7f$80$90\u0091\u0092$93$9f\u00A0\u4E2D'"},
        {u"abc", 3, u"''"}, {u"abc", 4, u"'a'"}, {u"abc", 5, u"'ab'"}, {u"a\tb", 5, u"'a'"},
        {u"a\tb", 6, u"'a$t'"}, {u"\tb", 5, u"'$t'"}, {u"\u0001", 5, u"''"},
        {u"\u0001", 6, u"'$01'"}, {std::u16string(u"a\0b", 3), 20, u"'a$00'"},
        {u"a\r", 20, u"'a$r'"}, {u"", 20, u"''"},
        // clang-format on
    };
    for (const auto& c : kCases) {
        std::u16string dest(c.destSize, u'#');
        EXPECT_EQ(ConvertStringToIECString(c.source.data(), dest.data(), c.destSize,
                                           static_cast<uint32_t>(c.source.size())),
                  1);
        EXPECT_EQ(Utf8(dest.c_str()), Utf8(c.literal)) << "size " << c.destSize;
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
