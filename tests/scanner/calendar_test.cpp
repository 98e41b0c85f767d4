#include "scanner/calendar.h"

#include <string>

#include <gtest/gtest.h>

#include "lq_data/scanner.h"
#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

using scanner::DateToDays;
using scanner::IsValidDate;

TEST(Calendar, DayNumbersAndDates) {
    struct Case {
        uint32_t days, year, month, day;
        int weekday;
    };
    for (const Case& c : {
             Case{0, 1970, 1, 1, 4},
             Case{364, 1970, 12, 31, 4},
             Case{365, 1971, 1, 1, 5},
             Case{10957, 2000, 1, 1, 6},
             Case{11016, 2000, 2, 29, 2},
             Case{11017, 2000, 3, 1, 3},
             Case{47540, 2100, 2, 28, 0},
             Case{47541, 2100, 3, 1, 1},
             Case{4294967295u, 11761191, 1, 20, 0},
         }) {
        uint32_t day = 0, month = 0, year = 0;
        int weekday = -1;
        EXPECT_EQ(ConvertDaysToDate(c.days, &day, &month, &year, &weekday), 1);
        EXPECT_EQ(std::make_pair(std::make_pair(year, month), std::make_pair(day, weekday)),
                  std::make_pair(std::make_pair(c.year, c.month), std::make_pair(c.day, c.weekday)))
            << c.days;
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
    struct Case {
        uint32_t year, month, day;
        bool valid;
    };
    for (const Case& c : {
             Case{2000, 2, 29, true},
             Case{1900, 2, 28, false},
             Case{2100, 2, 29, false},
             Case{2001, 4, 31, false},
             Case{1969, 12, 31, false},
             Case{1970, 0, 1, false},
             Case{1970, 13, 1, false},
             Case{1970, 1, 0, false},
             Case{11761191, 1, 20, true},
             Case{11761191, 1, 21, false},
             Case{11761191, 2, 1, false},
             Case{11761192, 1, 1, false},
         }) {
        EXPECT_EQ(IsValidDate(c.month, c.day, c.year), c.valid)
            << c.year << "-" << c.month << "-" << c.day;
    }
    EXPECT_EQ(IsLeapYear(1900) + IsLeapYear(2023) + IsLeapYear(-1), 0);
    EXPECT_EQ(IsLeapYear(2000) + IsLeapYear(2024) + IsLeapYear(-4), 3);
}

TEST(IecString, EscapesAndCutsBetweenCharacters) {
    struct Case {
        std::u16string source;
        uint32_t destSize;
        std::u16string literal;
    };
    for (const Case& c : {
             Case{u"It's", 20, u"'It$'s'"},
             Case{u"\t\n\f\r\r\n$\"", 40, u"'$t$l$p$r$n$$\"'"},
             Case{u"\u0001\u007F\u0080\u0091\u0092\u00E4\u4E2D", 40,
                  u"'$01$7f$80\u0091\u0092\u00E4\u4E2D'"},
             Case{u"abc", 3, u"''"},
             Case{u"abc", 4, u"'a'"},
             Case{u"a\tb", 5, u"'a'"},
             Case{u"\tb", 5, u"'$t'"},
             Case{u"\u0001", 5, u"''"},
             Case{u"\u0001", 6, u"'$01'"},
             Case{std::u16string(u"a\0b", 3), 20, u"'a$00'"},
             Case{u"a\r", 20, u"'a$r'"},
             Case{u"", 20, u"''"},
         }) {
        std::u16string source = c.source;
        std::u16string dest(c.destSize, u'#');
        EXPECT_EQ(ConvertStringToIECString(source.data(), dest.data(), c.destSize,
                                           static_cast<uint32_t>(source.size())),
                  1);
        EXPECT_EQ(Utf8(dest.c_str()), Utf8(c.literal.c_str())) << "size " << c.destSize;
    }
    char16_t untouched[3] = {u'x', u'y', u'z'};
    EXPECT_EQ(ConvertStringToIECString(untouched, untouched, 2, 1), 0);
    EXPECT_EQ(untouched[0], u'x');
}

}  // namespace
}  // namespace lq::test
