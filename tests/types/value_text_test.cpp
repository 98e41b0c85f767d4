#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "host/text/utf.h"
#include "lq_base.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"
#include "tests/support/memory_jobs.h"

namespace {

using lq::host::EncodeUtf8;

template <typename T>
Val Make(VAL_TYPE type, T first) {
    Val v;
    v.type = type;
    std::memcpy(v.payload, &first, sizeof first);
    return v;
}

Val MakeTime(VAL_TYPE type, int32_t days, double ms) {
    Val v = Make(type, days);
    std::memcpy(v.payload + 4, &ms, sizeof ms);
    return v;
}

std::string TextOf(Val& v, int expectedResult = 1) {
    CLQString text(u"before");
    EXPECT_EQ(v.GetCValue_LQ(&text), expectedResult) << "class " << v.type;
    return EncodeUtf8(text.GetText());
}

TEST(ValueText, ReadsOneConstant) {
    struct {
        const char16_t* text;
        int unsignedOnly;
        VAL_TYPE type;
        const char* number;
    } const cases[] = {
        // clang-format off
        {u"-5", 0, VT_SINT, "-5"}, {u"+5", 0, VT_SINT, "5"}, {u" 300 ", 0, VT_INT, "300"},
        {u"300", 1, VT_UINT, "300"}, {u"0", 1, VT_BOOL, "FALSE"}, {u"1", 1, VT_BOOL, "TRUE"},
        {u"-2147483648", 0, VT_DINT, "-2147483648"}, {u"-16#80", 0, VT_SINT, "-128"},
        {u"16#FFFF_FFFF", 0, VT_UDINT, "4294967295"}, {u"-1.5", 0, VT_LREAL, "-1.5"},
        {u"1.5", 1, VT_LREAL, "1.5"}, {u"TRUE", 0, VT_BOOL, "TRUE"}, {u"FALSE", 1, VT_BOOL, "FALSE"},
        {u"T#1s", 0, VT_TIME, "1000"}, {u"T#-1s", 0, VT_TIME, "-1000"},
        {u"-T#-1s", 0, VT_TIME, "1000"}, {u"D#1970-01-03", 0, VT_DATE, "172800"},
        {u"TOD#00:00:02", 0, VT_TOD, "2000"}, {u"DT#1970-01-02-00:00:01", 0, VT_DT, "86401"},
        // clang-format on
    };
    for (const auto& c : cases) {
        Val v;
        EXPECT_EQ(v.Set(c.text, c.unsignedOnly), 1) << EncodeUtf8(c.text);
        EXPECT_EQ(v.type, c.type) << EncodeUtf8(c.text);
        EXPECT_EQ(TextOf(v), c.number) << EncodeUtf8(c.text);
    }
}

TEST(ValueText, RefusesEverythingElse) {
    struct {
        const char16_t* text;
        int unsignedOnly;
    } const cases[] = {
        {u"", 0},     {u"  ", 0},    {u"-", 0},      {u"-5", 1},
        {u"+5", 1},   {u"-TRUE", 0}, {u"+FALSE", 0}, {u"- -5", 0},
        {u"*5", 0},   {u"(5)", 0},   {u"1 2", 0},    {u"1;", 0},
        {u"true", 0}, {u"name", 0},  {u"'text'", 0}, {u"-2147483649", 0},
        {u"2#2", 0},  {u"1..2", 0},  {u"%IX1", 0},   {u"T#", 0},
        {nullptr, 0},
    };
    for (const auto& c : cases) {
        Val v(1u);
        const std::string text = c.text ? EncodeUtf8(c.text) : "null";
        EXPECT_EQ(v.Set(c.text, c.unsignedOnly), 0) << text;
        EXPECT_EQ(v.type, VT_NONE) << text;
    }
}

TEST(ValueText, ReadsOnFromAScanner) {
    const std::u16string text = u"1 -2 ; OF 4";
    const auto size = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.c_str(), size, size, nullptr);
    CObject* const object = Scanner::CreateObject();
    ASSERT_NE(object, nullptr);
    Scanner& scanner = static_cast<Scanner&>(*object);
    scanner.RegisterKeyword(u"OF", KW_OF);
    scanner.Initialize(stream);
    struct {
        int result;
        VAL_TYPE type;
    } const steps[] = {{1, VT_SINT}, {1, VT_SINT}, {0, VT_NONE}, {0, VT_NONE},
                       {1, VT_SINT}, {1, VT_NONE}, {1, VT_NONE}};
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        Val v(1u);
        EXPECT_EQ(v.Set(scanner, 0), steps[i].result) << i;
        EXPECT_EQ(v.type, steps[i].type) << i;
    }
    delete object;
}

TEST(ValueText, EveryClassHasItsTextAndNumber) {
    constexpr uint32_t kStays = 0xABCDEF01;
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    struct {
        Val value;
        int textResult;
        const char* text;
        int numberResult;
        uint32_t number;
    } cases[] = {
        {Make(VT_BOOL, 2u), 1, "TRUE", 1, 2},
        {Make(VT_SINT, int8_t{-1}), 1, "-1", 1, 0xFFFFFFFF},
        {Make(VT_USINT, uint8_t{255}), 1, "255", 1, 255},
        {Make(VT_INT, -32768), 1, "-32768", 1, 0xFFFF8000},
        {Make(VT_UINT, uint16_t{65535}), 1, "65535", 1, 65535},
        {Make(VT_DINT, INT32_MIN), 1, "-2147483648", 1, 0x80000000},
        {Make(VT_UDINT, UINT32_MAX), 1, "4294967295", 1, 0xFFFFFFFF},
        {Make(VT_LINT, int64_t{1}), 0, "(64-bit value)", 1, kStays},
        {Make(VT_ULINT, uint64_t{1}), 0, "(64-bit value)", 1, kStays},
        {Make(VT_REAL, 0.1f), 1, "0.1000000014901161", 1, 0x3DCCCCCD},
        {Make(VT_LREAL, 1.5), 1, "1.5", 1, 0x3FC00000},
        {Make(VT_LREAL, -1e300), 1, "-1e+300", 1, 0xFF800000},
        {MakeTime(VT_TIME, -1, -0.9), 1, "-86400000", 1, 0xFAD9A400},
        {MakeTime(VT_TIME, 50, 1.9), 1, "25032705", 1, 25032705},
        {MakeTime(VT_TIME, 0, kInfinity), 1, "0", 1, 0},
        {Make(VT_DATE, 50000), 1, "25032704", 1, 25032704},
        {Make(VT_TOD, 86399999.9), 1, "86399999", 1, 86399999},
        {Make(VT_TOD, -1.0), 1, "4294967295", 1, 0xFFFFFFFF},
        {Make(VT_TOD, 1e19), 1, "2313682944", 1, 2313682944u},
        {MakeTime(VT_DT, 1, 1999.9), 1, "86401", 1, 86401},
        {Make(VT_STRING, 7u), 0, "", 0, 0},
        {Make(VT_NONE, 7u), 0, "", 0, 0},
        {Make(static_cast<VAL_TYPE>(16), 7u), 1, "before", 1, kStays},
    };
    for (auto& c : cases) {
        EXPECT_EQ(TextOf(c.value, c.textResult), c.text) << "class " << c.value.type;
        uint32_t number = kStays;
        EXPECT_EQ(c.value.GetAnyNumberValue(number), c.numberResult) << c.text;
        EXPECT_EQ(number, c.number) << c.text << " class " << c.value.type;
    }
}

TEST(ValueText, WithoutMemoryThereIsNoValue) {
    const auto read = [] {
        Val value;
        const int hasValue = value.Set(u"-70000", 0);
        EXPECT_EQ(value.type, hasValue ? VT_DINT : VT_NONE);
        return hasValue ? "-70000" : lq::test::kShort;
    };
    lq::test::RunWithFailures({"value", [&] { return read; }});
}

}  // namespace
