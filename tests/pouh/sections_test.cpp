// Section keywords, the order of the sections, and what the loaders keep of both for a list.
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "load_test_util.h"
#include "pouh/list_memory.h"
#include "pouh/lists.h"
#include "pouh/records.h"
#include "tests/support/rows.h"

namespace {

using namespace lq::pouh;

TEST(Sections, KeywordsExactly) {
    for (int round = 0; round < 2; ++round) {
        for (const auto& row : lq::test::Rows("pouh/texts.rows", "sections")) {
            const auto scope = static_cast<uint32_t>(row.Number(1));
            EXPECT_EQ(GetDeclScope(row.Wide(0).c_str()), scope) << "round " << round << row.line;
            EXPECT_EQ(KeywordOfScope(scope), scope != 0 ? row.Wide(0) : u"") << row.line;
        }
        EXPECT_EQ(GetDeclScope(nullptr), DS_UNKNOWN);
        LQHeadReleaseHashTable();
    }
}

std::vector<uint32_t> NumbersOf(const std::string& text) {
    std::istringstream numbers(text);
    return {std::istream_iterator<uint32_t>(numbers), {}};
}

TEST(Sections, InOrderAndGroupsStable) {
    for (const auto& row : lq::test::Rows("pouh/texts.rows", "order of scopes")) {
        const std::vector<uint32_t> scopes = NumbersOf(row[0]);
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        table->list = NewDeclList();
        unsigned none = 0;  // the place of the one that is none
        for (unsigned i = 0; i < scopes.size(); ++i) {
            DECL_TYP* decl = scopes[i] == 99 ? nullptr : CreateDecl();
            none = decl ? none : i;
            if (decl) {
                decl->scope = scopes[i];
                decl->word = static_cast<uint16_t>(i);
            }
            ASSERT_NE(AddListElement(table->list, &decl), nullptr);
        }
        EXPECT_EQ(RegroupByScope(*table), 1);
        std::vector<uint32_t> order;
        void* slot = nullptr;  // a list that was regrouped stands before its first element
        auto code = scopes.size() > 1 ? LC_NEXT : LC_FIRST;  // others stay
        EXPECT_TRUE(code == LC_NEXT || !ListGet(table->list, slot, nullptr, LC_NEXT, 0));
        for (; ListGet(table->list, slot, nullptr, code, 0) != 0; code = LC_NEXT) {
            const DECL_TYP* decl = *static_cast<DECL_TYP**>(slot);
            order.push_back(decl ? decl->word : none);
        }
        EXPECT_EQ(order, NumbersOf(row[1])) << row.line;
        DestroySymbolTable(table);
    }
}

// Whatever was asked before, the answers are those of the functions themselves.
TEST(Sections, AListIsAsWithoutItsMemory) {
    LoadedProject project;
    project.NewDataType(u"Point");
    project.NewPou(LQ_KIND_FUNCTION_BLOCK, u"Motor");
    const std::u16string blanks28 = u"INT" + std::u16string(28, u' ');  // as long as is kept
    const std::u16string blanks29 = u"INT" + std::u16string(29, u' ');
    const std::u16string tooLong(40, u'V');
    // clang-format off
    const char16_t* const texts[] = {
        u"INT", u"BOOL", u"Motor", u"REAL", u"STRING(5)", u"TIME", u"DINT", u"", u"INT x", u"Point",
        u"Nobody", u"INTEGER", u"STRUCT END", u" INT", blanks28.c_str(), u"VOID", u"IN",
        blanks29.c_str(), u"BYTE", u"ANY_INT",
    };
    const char16_t* const keywords[] = {
        u"VAR", nullptr, u"VAR_INPUT", u"Var", u"VAR_IN", u"", u"VAR_GLOBAL_CONSTANT_RETAIN",
        tooLong.c_str(),
    };
    // clang-format on
    ListMemory memory;
    for (unsigned seed = 1, i = 0; i < 500; ++i) {
        seed = seed * 1664525 + 1013904223;
        // Now and then a run of one text, as lists have them.
        const unsigned chosen = i % 3 == 0 ? i / 30 : seed >> 16;
        const char16_t* const text = texts[chosen % std::size(texts)];
        TypeClass expected{}, type{};
        ASSERT_EQ(memory.ClassifyType(text, type), ClassifyType(text, expected));
        ASSERT_EQ(type, expected) << testing::PrintToString(text);
        const char16_t* const keyword = keywords[chosen % std::size(keywords)];
        ASSERT_EQ(memory.GetDeclScope(keyword), GetDeclScope(keyword));
    }
}

}  // namespace
