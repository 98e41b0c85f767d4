#include <gtest/gtest.h>

#include "host/text/utf.h"
#include "lq_model.h"

namespace {

using lq::host::EncodeUtf8;

constexpr const char16_t* kAccepted[] = {
    u"",
    u"  ",
    u"1",
    u"-5",
    u"+ 1.5e3",
    u"16#FF",
    u"TRUE",
    u"Red",
    u"Color.Red",
    u"INT#5",
    u"Color#Red",
    u"UINT#16#FF",
    u"'it is $'so$', isn$'t it'",
    u"T#5s",
    u"-T#1m",
    u"D#2024-02-29",
    u"TOD#06:00:00",
    u"DT#2024-02-29-12:30:00",
    u"%MW4",
    u"[1, 2, 3(0)]",
    u"[2([1, 2]), [3, 4]]",
    u"1, 2, 3(0)",
    u"3()",
    u"(a := 1, b := (c := 2))",
    u"a := 1, b := [1, 2]",
    u"[(a := 1), (a := 2)]",
    u"Limit * 2 - 1",
    u"5 MOD 3",
    u"1 (* one *)",
    u"1\n",
};

constexpr const char16_t* kRefused[] = {
    u"1 2", u"(1",    u"1)",   u"[1)",   u"(1]",       u"1,",   u",1",    u"a :=",  u"1 := 2",
    u"1;",  u"'open", u"[]",   u"()",    u"a b",       u"1..2", u"{",     u"#",     u"INT#",
    u"* 2", u"a = 1", u"2 * ", u"1 (* ", u"a := := 1", u"3(,)", u"T#5 s", u"a : 1", u"[[1]",
};

TEST(CheckInitSyntax, AcceptsValues) {
    for (const char16_t* text : kAccepted) {
        EXPECT_EQ(CheckInitSyntax(nullptr, text), 0) << EncodeUtf8(text);
    }
    EXPECT_EQ(CheckInitSyntax(nullptr, nullptr), 0);
}

TEST(CheckInitSyntax, RefusesTheRest) {
    for (const char16_t* text : kRefused) {
        EXPECT_NE(CheckInitSyntax(nullptr, text), 0) << EncodeUtf8(text);
    }
}

TEST(CheckInitSyntax, BoundsTheDepthOfBrackets) {
    for (const std::size_t depth : {std::size_t{64}, std::size_t{65}, std::size_t{10000}}) {
        const std::u16string text =
            std::u16string(depth, u'(') + u"1" + std::u16string(depth, u')');
        EXPECT_EQ(CheckInitSyntax(nullptr, text.c_str()) == 0, depth <= 64) << depth;
    }
}

}  // namespace
