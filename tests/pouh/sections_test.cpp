// Section keywords, the order of the sections.
#include <gtest/gtest.h>

#include "load_test_util.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"

namespace {

using namespace lq::pouh;

TEST(Sections, KeywordsExactly) {
    // clang-format off
    const std::pair<const char16_t*, uint32_t> cases[] = {
        {u"VAR", 1}, {u"VAR_INPUT", 2}, {u"VAR_INPUT CONSTANT", 3}, {u"VAR_IN_EXT", 4},
        {u"VAR_OUTPUT", 5}, {u"VAR_IN_OUT", 6}, {u"VAR_RETAIN", 7}, {u"VAR_INPUT_RETAIN", 8},
        {u"VAR_OUTPUT_RETAIN", 9}, {u"VAR_EXTERNAL", 10}, {u"VAR_GLOBAL", 11},
        {u"VAR_EXTERNAL_RETAIN", 13}, {u"VAR_GLOBAL_RETAIN", 14}, {u"VAR_CONSTANT", 15},
        {u"VAR_CONSTANT_RETAIN", 16}, {u"VAR_GLOBAL_CONSTANT", 17},
        {u"VAR_GLOBAL_CONSTANT_RETAIN", 18}, {u"VAR_EXTERNAL_CONSTANT", 19},
        {u"VAR_EXTERNAL_CONSTANT_RETAIN", 20},
        // Texts that are no keywords.
        {u"VAR_INPUT_CONSTANT", 0}, {u"VAR_INPUT  CONSTANT", 0}, {u"var_input", 0},
        {u"VAR_INPUT ", 0}, {u" VAR", 0}, {u"VA", 0}, {u"", 0}, {nullptr, 0},
    };
    // clang-format on
    LQHeadReleaseHashTable();
    for (const auto& [keyword, scope] : cases) {
        EXPECT_EQ(GetDeclScope(keyword), scope) << testing::PrintToString(keyword);
        EXPECT_EQ(std::u16string(KeywordOfScope(scope)), scope != 0 ? keyword : u"") << scope;
    }
}

TEST(Sections, InOrderAndGroupsStable) {
    struct {
        std::vector<uint32_t> scopes;  // 99: no declaration
        std::vector<unsigned> order;   // of their places
    } const cases[] = {
        {{}, {}},
        {{1}, {0}},
        {{1, 5, 2, 5, 2}, {2, 4, 1, 3, 0}},
        {{99, 1}, {1, 0}},
        {{3, 2, 3}, {0, 1, 2}},  // constant inputs share a group with the others
        // Every scope backwards through the groups; what has no group of its own comes last.
        {{12, 0, 21, 11, 17, 16, 7, 15, 1, 20, 13, 19, 10, 9, 5, 6, 8, 4, 3},
         {18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 0, 1, 2, 3, 4}},
    };
    for (const auto& c : cases) {
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        table->list = NewDeclList();
        unsigned none = 0;  // the place of the one that is none
        for (unsigned i = 0; i < c.scopes.size(); ++i) {
            DECL_TYP* decl = c.scopes[i] == 99 ? nullptr : CreateDecl();
            none = decl ? none : i;
            if (decl) {
                decl->scope = c.scopes[i];
                decl->word = static_cast<uint16_t>(i);
            }
            ASSERT_NE(AddListElement(table->list, &decl), nullptr);
        }
        EXPECT_EQ(RegroupByScope(*table), 1);
        std::vector<unsigned> order;
        void* slot = nullptr;  // a list that was regrouped stands before its first element
        auto code = c.scopes.size() > 1 ? LC_NEXT : LC_FIRST;
        for (; ListGet(table->list, slot, nullptr, code, 0) != 0; code = LC_NEXT) {
            const DECL_TYP* decl = *static_cast<DECL_TYP**>(slot);
            order.push_back(decl ? decl->word : none);
        }
        EXPECT_EQ(order, c.order) << testing::PrintToString(c.scopes);
        DestroySymbolTable(table);
    }
}

}  // namespace
