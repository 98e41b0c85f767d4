// Typed constants: from numbers, times and texts, and to them.
#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/rows.h"
#include "tests/support/test_allocator.h"

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
TEST(ValueText, ReadsOneConstantAndRefusesEverythingElse) {
    constexpr const char* kClasses[] = {"BOOL",  "SINT",  "USINT", "INT",   "UINT",
                                        "DINT",  "UDINT", "LINT",  "ULINT", "REAL",
                                        "LREAL", "TIME",  "DATE",  "TOD",   "DT"};
    for (const lq::test::Row& row : lq::test::Rows("types/types.rows", "constants")) {
        SCOPED_TRACE(row.line);
        Val v(1u);
        const bool isRefused = row[2].empty();
        EXPECT_EQ(v.Set(row.Wide(0).c_str(), row[1] == "bits" ? 1 : 0), isRefused ? 0 : 1);
        ASSERT_EQ(v.type == VT_NONE, isRefused);
        if (isRefused) {
            continue;
        }
        EXPECT_EQ(kClasses[v.type], row[2]);
        EXPECT_EQ(TextOf(v), row[3]);
        ANY_INT_32 number{7, 9};
        const bool isInteger = v.type >= VT_SINT && v.type <= VT_UDINT;
        EXPECT_EQ(v.Get(number), isInteger);
        const int64_t expected = isInteger ? row.Number(3) : 9;
        EXPECT_EQ(number.sign ? -int64_t{number.magnitude} : number.magnitude, expected);
        EXPECT_EQ(number.sign, expected < 0);
    }
    Val v(1u);
    EXPECT_EQ(v.Set(nullptr, 0), 0);
    EXPECT_EQ(v.type, VT_NONE);
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
    const auto make = [] {
        auto lit = std::make_shared<Lit>();
        lit->SetText(u"1");
        return lit;
    };
    lq::test::RunWithFailures("text", make, [](Lit& lit) {
        const std::u16string before = lit.text;
        const int set = lit.SetText(u"23");
        EXPECT_EQ(lit.text, set ? u"23" : before);
        return set ? "23" : lq::test::kShort;
    });
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
    const auto size = static_cast<int32_t>(longReal.size());
    MEMSTREAM_W stream(longReal.c_str(), size, size, nullptr);
    const std::unique_ptr<CObject> object(Scanner::CreateObject());
    Scanner& scanner = static_cast<Scanner&>(*object);
    scanner.Initialize(stream);
    const lq::test::FailingAllocation failing(1, true);
    Val value(1u);
    EXPECT_EQ(value.Set(scanner, 0), 0);
    EXPECT_EQ(value.type, VT_NONE);
}

}  // namespace
