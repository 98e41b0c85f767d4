// Section keywords, the order of the sections.
#include <sstream>

#include <gtest/gtest.h>

#include "load_test_util.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"
#include "tests/support/rows.h"

namespace {

using namespace lq::pouh;

TEST(Sections, KeywordsExactly) {
    LQHeadReleaseHashTable();
    for (const auto& row : lq::test::Rows("pouh/texts.rows", "sections")) {
        const auto scope = static_cast<uint32_t>(row.Number(1));
        EXPECT_EQ(GetDeclScope(row.Wide(0).c_str()), scope) << row.line;
        EXPECT_EQ(KeywordOfScope(scope), scope != 0 ? row.Wide(0) : u"") << row.line;
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

}  // namespace
