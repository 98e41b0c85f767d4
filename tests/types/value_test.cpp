// Typed constants: from numbers, times and texts, and to them.
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"
#include "tests/support/memory_jobs.h"

namespace {

using lq::host::EncodeUtf8;

template <typename T>
T Payload(const Val& v, std::size_t offset = 0) {
    T field;
    std::memcpy(&field, v.payload + offset, sizeof field);
    return field;
}

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

// An integer takes the smallest class that holds it, a bit string the smallest unsigned one.
TEST(ValueText, ReadsOneConstant) {
    struct {
        const char16_t* text;
        int unsignedOnly;
        VAL_TYPE type;
        const char* printed = nullptr;  // null: as it was read
    } const cases[] = {
        // clang-format off
        {u"0", 0, VT_SINT}, {u"127", 0, VT_SINT}, {u"128", 0, VT_USINT}, {u"255", 0, VT_USINT},
        {u"256", 0, VT_INT}, {u"32767", 0, VT_INT}, {u"32768", 0, VT_UINT}, {u"65535", 0, VT_UINT},
        {u"65536", 0, VT_DINT}, {u"2147483647", 0, VT_DINT}, {u"2147483648", 0, VT_UDINT},
        {u"4294967295", 0, VT_UDINT}, {u"-1", 0, VT_SINT}, {u"-128", 0, VT_SINT},
        {u"-129", 0, VT_INT}, {u"-32768", 0, VT_INT}, {u"-32769", 0, VT_DINT},
        {u"-2147483648", 0, VT_DINT}, {u"-0", 0, VT_SINT, "0"}, {u"+5", 0, VT_SINT, "5"},
        {u" 300 ", 0, VT_INT, "300"}, {u"16#FFFF_FFFF", 0, VT_UDINT, "4294967295"},
        {u"-16#80", 0, VT_SINT, "-128"}, {u"0", 1, VT_BOOL, "FALSE"}, {u"1", 1, VT_BOOL, "TRUE"},
        {u"2", 1, VT_USINT}, {u"255", 1, VT_USINT}, {u"256", 1, VT_UINT}, {u"65535", 1, VT_UINT},
        {u"65536", 1, VT_UDINT}, {u"4294967295", 1, VT_UDINT}, {u"-1.5", 0, VT_LREAL},
        {u"1.5", 1, VT_LREAL}, {u"TRUE", 0, VT_BOOL}, {u"FALSE", 1, VT_BOOL},
        {u"T#1s", 0, VT_TIME, "1000"}, {u"T#-1s", 0, VT_TIME, "-1000"},
        {u"-T#-1s", 0, VT_TIME, "1000"}, {u"D#1970-01-03", 0, VT_DATE, "172800"},
        {u"TOD#00:00:02", 0, VT_TOD, "2000"}, {u"DT#1970-01-02-00:00:01", 0, VT_DT, "86401"},
        // clang-format on
    };
    for (const auto& c : cases) {
        const std::string text = EncodeUtf8(c.text);
        SCOPED_TRACE(text);
        const std::string printed = c.printed ? c.printed : text;
        Val v;
        EXPECT_EQ(v.Set(c.text, c.unsignedOnly), 1);
        EXPECT_EQ(v.type, c.type);
        EXPECT_EQ(TextOf(v), printed);
        ANY_INT_32 number{7, 9};
        const bool isInteger = c.type >= VT_SINT && c.type <= VT_UDINT;
        EXPECT_EQ(v.Get(number), isInteger);
        const int64_t expected = isInteger ? std::strtoll(printed.c_str(), nullptr, 10) : 9;
        EXPECT_EQ(number.sign ? -int64_t{number.magnitude} : number.magnitude, expected);
        EXPECT_EQ(number.sign, expected < 0);
    }
}

TEST(ValueText, RefusesEverythingElse) {
    // clang-format off
    struct { const char16_t* text; int unsignedOnly; } const cases[] = {
        {u"", 0}, {u"  ", 0}, {u"-", 0}, {u"-5", 1}, {u"+5", 1}, {u"-TRUE", 0}, {u"+FALSE", 0},
        {u"- -5", 0}, {u"*5", 0}, {u"(5)", 0}, {u"1 2", 0}, {u"1;", 0}, {u"true", 0}, {u"name", 0},
        {u"'text'", 0}, {u"-2147483649", 0}, {u"-4294967295", 0}, {u"2#2", 0}, {u"1..2", 0},
        {u"%IX1", 0}, {u"T#", 0}, {nullptr, 0},
    };
    // clang-format on
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

TEST(Value, TimesAreNegatedByEitherSignAndTheSourceStays) {
    struct {
        uint16_t kind;
        VAL_TYPE type;
        bool days;
        int msOffset;  // -1: none
    } const kinds[] = {{TK_TIME, VT_TIME, true, 4},
                       {TK_DATE_AND_TIME, VT_DT, true, 4},
                       {TK_DATE, VT_DATE, true, -1},
                       {TK_TIME_OF_DAY, VT_TOD, false, 0}};
    for (const auto& k : kinds) {
        for (int signs = 0; signs < 4; ++signs) {
            SCOPED_TRACE(testing::Message() << k.kind << ' ' << signs);
            const int sign = signs % 2 == 0 ? 1 : -1;
            const int neg = signs / 2;
            const int factor = (sign == -1) != (neg == 1) ? -1 : 1;
            Time t(12, 345.5, sign);
            const Val v(k.kind, t, neg);
            EXPECT_EQ(v.type, k.type);
            EXPECT_TRUE(!k.days || Payload<int32_t>(v) == factor * 12);
            EXPECT_TRUE(k.msOffset < 0 ||
                        Payload<double>(v, static_cast<std::size_t>(k.msOffset)) == factor * 345.5);
            EXPECT_TRUE(t.days == 12 && t.ms == 345.5 && t.sign == sign);
        }
    }
    Time lowest(INT32_MIN, 0.0, -1);
    Val wrapped;
    EXPECT_EQ(wrapped.Set(TK_DATE, lowest, 0), 1);
    EXPECT_EQ(Payload<int32_t>(wrapped), INT32_MIN);
    EXPECT_EQ(wrapped.Set(TK_INTEGER, lowest, 0), 0);
    EXPECT_EQ(wrapped.type, VT_NONE);
}

TEST(Value, BufferSizes) {
    const uint32_t sizes[] = {4, 1, 1, 4, 2, 4, 4, 8, 8, 4, 8, 12, 4, 8, 12, 0, 0};
    for (uint32_t type = 0; type <= std::size(sizes); ++type) {
        const bool isNone = type == std::size(sizes);
        Val v;
        v.type = isNone ? VT_NONE : static_cast<VAL_TYPE>(type);
        uint32_t size = 99;
        void* const buffer = Val().GetValBuf(v, size);
        EXPECT_EQ(size, isNone ? 0 : sizes[type]) << type;
        EXPECT_EQ(buffer, size != 0 ? v.payload : nullptr) << type;
    }
}

TEST(Literal, OwnsItsTextUntilItIsGivenUp) {
    Lit lit;
    const std::u16string source = u"16#FF";
    EXPECT_EQ(lit.SetText(source.c_str()), 1);
    ASSERT_NE(lit.text, source.c_str());
    EXPECT_EQ(std::u16string(lit.text), source);
    EXPECT_EQ(lit.SetText(lit.text + 3), 1) << "part of the old text";
    EXPECT_EQ(std::u16string(lit.text), u"FF");
    Lit copy(lit);
    EXPECT_EQ(copy.text, lit.text);
    copy.text = nullptr;
    EXPECT_EQ(lit.SetText(nullptr), 1);
    EXPECT_EQ(lit.text, nullptr);
}

TEST(Literal, WithoutMemoryTheOldTextStays) {
    lq::test::RunWithFailures({"text", []() -> lq::test::Attempt {
                                   const auto lit = std::make_shared<Lit>();
                                   lit->SetText(u"1");
                                   return [=] {
                                       const std::u16string before = lit->text;
                                       const int set = lit->SetText(u"23");
                                       EXPECT_EQ(lit->text, set ? u"23" : before);
                                       return set ? "23" : lq::test::kShort;
                                   };
                               }});
}

TEST(ValueText, WithoutMemoryThereIsNoValue) {
    const std::u16string longReal = u"1." + std::u16string(2500, u'0') + u"e5";
    for (const std::u16string& text : {std::u16string(u"-70000"), longReal}) {
        const auto read = [&text] {
            Val value;
            uint32_t number = 0;
            const int hasValue = value.Set(text.c_str(), 0);
            EXPECT_EQ(value.type != VT_NONE, hasValue != 0);
            EXPECT_EQ(value.GetAnyNumberValue(number), hasValue);
            return hasValue ? std::to_string(number) : lq::test::kShort;
        };
        lq::test::RunWithFailures({"value", [&] { return read; }});
    }
}

}  // namespace
