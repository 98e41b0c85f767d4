#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/scanner.h"
#include "lq_data/types.h"
#include "tests/support/memory_jobs.h"

namespace {

template <typename T>
T Payload(const Val& v, std::size_t offset = 0) {
    T field;
    std::memcpy(&field, v.payload + offset, sizeof field);
    return field;
}

TEST(Value, NumbersTakeTheSmallestClassAndReadBack) {
    struct {
        int sign;
        uint32_t magnitude;
        VAL_TYPE type;
    } const cases[] = {
        // clang-format off
        {0, 0, VT_SINT}, {0, 127, VT_SINT}, {0, 128, VT_USINT}, {0, 255, VT_USINT},
        {0, 256, VT_INT}, {0, 32767, VT_INT}, {0, 32768, VT_UINT}, {0, 65535, VT_UINT},
        {0, 65536, VT_DINT}, {0, 2147483647, VT_DINT}, {0, 2147483648, VT_UDINT},
        {0, 4294967295, VT_UDINT}, {1, 0, VT_SINT}, {1, 1, VT_SINT}, {1, 128, VT_SINT},
        {1, 129, VT_INT}, {1, 32768, VT_INT}, {1, 32769, VT_DINT}, {1, 2147483648, VT_DINT},
        {1, 2147483649, VT_NONE}, {1, 4294967295, VT_NONE},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.sign << ' ' << c.magnitude);
        const bool isNumber = c.type != VT_NONE;
        Val v(ANY_INT_32{c.sign, c.magnitude});
        EXPECT_EQ(v.type, c.type);
        EXPECT_EQ(v.Set(ANY_INT_32{c.sign, c.magnitude}), isNumber);
        ANY_INT_32 back{7, c.magnitude};
        EXPECT_EQ(v.Get(back), isNumber);
        EXPECT_EQ(back.sign, isNumber && c.magnitude != 0 ? c.sign : 0);
        EXPECT_EQ(back.magnitude, c.magnitude);
    }
}

TEST(Value, BitStringsTakeUnsignedClasses) {
    struct {
        uint32_t number;
        VAL_TYPE type;
    } const cases[] = {{0, VT_BOOL},   {1, VT_BOOL},     {2, VT_USINT},     {255, VT_USINT},
                       {256, VT_UINT}, {65535, VT_UINT}, {65536, VT_UDINT}, {4294967295, VT_UDINT}};
    for (const auto& c : cases) {
        Val v(c.number);
        EXPECT_EQ(v.type, c.type) << c.number;
        uint32_t back = ~c.number;
        EXPECT_EQ(v.GetAnyNumberValue(back), 1) << c.number;
        EXPECT_EQ(back, c.number);
        ANY_INT_32 number{1, 0};
        EXPECT_EQ(v.Get(number), c.type != VT_BOOL) << c.number;
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

TEST(TimeObject, HasARunTimeClassButIsNotCreatedByName) {
    Time t;
    EXPECT_STREQ(t.GetRuntimeClass()->name, "Time");
    EXPECT_EQ(t.GetRuntimeClass()->base, &CObject::classCObject);
    EXPECT_EQ(CRuntimeClass::CreateObject("Time"), nullptr);
    EXPECT_TRUE(t.days == 0 && t.ms == 0.0 && t.sign == 1);
}

}  // namespace
