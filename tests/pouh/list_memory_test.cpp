#include "pouh/list_memory.h"

#include <string>

#include <gtest/gtest.h>

#include "load_test_util.h"

namespace {

using namespace lq::pouh;

// Whatever was asked before, the answers are those of the functions themselves.
TEST(ListMemory, TypesAreAsWithoutIt) {
    LoadedProject project;
    project.AddStructure(u"Point");
    project.AddPouNamed(u"Motor", LQ_KIND_FUNCTION_BLOCK);
    const std::u16string blanks28 = u"INT" + std::u16string(28, u' ');  // as long as is kept
    const std::u16string blanks29 = u"INT" + std::u16string(29, u' ');
    const char16_t* const texts[] = {u"INT",        u"BOOL",          u"Motor",         u"REAL",
                                     u"STRING(5)",  u"TIME",          u"DINT",          u"",
                                     u"INT x",      u"Point",         u"Nobody",        u"INTEGER",
                                     u"STRUCT END", u" INT",          blanks28.c_str(), u"VOID",
                                     u"IN",         blanks29.c_str(), u"BYTE",          u"ANY_INT"};
    ListMemory memory;
    for (unsigned seed = 1, i = 0; i < 500; ++i) {
        seed = seed * 1664525 + 1013904223;
        // Now and then a run of one text, as lists have them.
        const char16_t* const text = texts[(i % 3 == 0 ? i / 30 : seed >> 16) % std::size(texts)];
        TypeClass expected{};
        TypeClass type{};
        const Classification classification = ClassifyType(text, expected);
        ASSERT_EQ(memory.ClassifyType(text, type), classification) << testing::PrintToString(text);
        ASSERT_EQ(type, expected) << testing::PrintToString(text);
    }
}

TEST(ListMemory, SectionsAreAsWithoutIt) {
    const std::u16string tooLong(40, u'V');
    const char16_t* const keywords[] = {
        u"VAR",    u"VAR", nullptr, u"VAR_INPUT", u"VAR",     u"Var", u"VAR_GLOBAL_CONSTANT_RETAIN",
        u"VAR_IN", u"",    nullptr, u"VAR_IN",    u"VAR_TEMP"};
    ListMemory memory;
    for (int i = 0; i < 2; ++i) {
        for (const char16_t* keyword : keywords) {
            EXPECT_EQ(memory.GetDeclScope(keyword), GetDeclScope(keyword));
            EXPECT_EQ(memory.GetDeclScope(tooLong.c_str()), DS_UNKNOWN);
            EXPECT_EQ(memory.GetDeclScope(keyword), GetDeclScope(keyword));
            EXPECT_EQ(memory.GetDeclScope(keyword), GetDeclScope(keyword));
        }
    }
}

}  // namespace
