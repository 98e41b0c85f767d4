#include "pouh/type_class.h"

#include <gtest/gtest.h>

#include "load_test_util.h"

namespace {

using namespace lq::pouh;

class TypeClassTest : public testing::Test {
  protected:
    void SetUp() override {
        project_.AddStructure(u"Point");
        project_.AddStructure(u"Two words");
        project_.AddPouNamed(u"Motor", LQ_KIND_FUNCTION_BLOCK);
        project_.AddPouNamed(u"Main");
    }

    LoadedProject project_;
};

TEST_F(TypeClassTest, Accepted) {
    struct {
        const char16_t* text;
        int type;
        // clang-format off
    } const cases[] = {
        {u"INT", 1}, {u"  SINT ", 1}, {u"BOOL", 1}, {u"DATE_AND_TIME", 1}, {u"ANY", 1},
        {u"ANY_SIMPLE", 1}, {u"\nREAL", 1}, {u"STRING", 3}, {u"STRING(20)", 3}, {u"STRING[20]", 3},
        {u"ARRAY [1..10] OF INT", 4}, {u"ARRAY[1..10]OF BOOL", 4}, {u"ARRAY [1 .. 10] OF INT", 4},
        {u"ARRAY [1..10, 0..3] OF REAL", 4}, {u"ARRAY [-1..+10, +0 .. -3] OF DATE_AND_TIME", 4},
        {u"ARRAY [1..2] OF ANY16", 4}, {u"ARRAY [1..2] OF ANY32", 4},
        {u"ARRAY [1..2] OF STRING", 4}, {u"ARRAY [1..2] OF STRING(8)", 4},
        {u"ARRAY [1..2] OF Point", 4}, {u"ARRAY\n[1..2]\nOF INT", 4}, {u"Motor", 6}, {u"TON", 6},
        {u"Point", 7}, {u"STRUCT a : INT; END_STRUCT", 8}, {u"UNION", 9},
    };
    // clang-format on
    for (const auto& c : cases) {
        TypeClass type{};
        EXPECT_EQ(ClassifyType(c.text, type), Classification::kAccepted)
            << testing::PrintToString(c.text);
        EXPECT_EQ(static_cast<int>(type), c.type) << testing::PrintToString(c.text);
    }
}

TEST_F(TypeClassTest, Rejected) {
    // clang-format off
    const char16_t* const cases[] = {
        u"", u"Unknown", u"Main", u"int", u"INT INT", u"INT (1..10)", u"INT (-1 .. 10)",
        u"UDINT(1..10)", u"BOOL (1..2)", u"BOOL;", u"Motor x", u"Point x",
        u"Two words", u" Point", u"TRUE",
        u"OF", u"5", u"(INT)", u"STRING(", u"STRING(20) x", u"STRING 20", u"ARRAY",
        u"ARRAY 1..10 OF INT", u"ARRAY [] OF INT", u"ARRAY [1] OF INT", u"ARRAY [1..] OF INT",
        u"ARRAY [..10] OF INT", u"ARRAY [1..10,] OF INT", u"ARRAY [1..10 OF INT",
        u"ARRAY (1..10) OF INT",
        u"ARRAY (1..10] OF INT", u"ARRAY [--1..10] OF INT", u"ARRAY [1..16#A] OF INT",
        u"ARRAY [a..b] OF INT", u"ARRAY [1..10] INT", u"ARRAY [1..10] OF",
        u"ARRAY [1..10] OF INT x", u"ARRAY [1..10] OF ANY", u"ARRAY [1..10] OF ANY_SIMPLE",
        u"ARRAY [1..10] OF Motor", u"ARRAY [1..10] OF STRING(x)",
        u"ARRAY [1..10] OF ARRAY [0..1] OF INT",
    };
    // clang-format on
    for (const char16_t* text : cases) {
        TypeClass type{};
        EXPECT_EQ(ClassifyType(text, type), Classification::kRejected)
            << testing::PrintToString(text);
        EXPECT_EQ(type, TypeClass::kElementary) << testing::PrintToString(text);
    }
}

}  // namespace
