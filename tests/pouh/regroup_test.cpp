#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pouh/lists.h"
#include "pouh/record_access.h"
#include "pouh/records.h"

namespace {

// The place that each element of `scopes` has after regrouping.
std::vector<unsigned> Regroup(const std::vector<uint32_t>& scopes) {
    SYMBOL_TABLE_TYP* table = CreateSymbolTable();
    table->list = lq::pouh::NewDeclList();
    for (unsigned i = 0; i < scopes.size(); ++i) {
        DECL_TYP* decl = CreateDecl();
        decl->scope = scopes[i];
        decl->word = static_cast<uint16_t>(i);
        EXPECT_TRUE(lq::pouh::AddDecl(table->list, decl, LC_LAST));
    }
    EXPECT_EQ(lq::pouh::RegroupByScope(*table), 1);
    std::vector<unsigned> order;
    for (DECL_TYP* d = lq::pouh::DeclAt(table->list, LC_FIRST); d;
         d = lq::pouh::DeclAt(table->list, LC_NEXT)) {
        order.push_back(d->word);
    }
    EXPECT_EQ(CardinalityOfList(table->list), scopes.size());
    DestroySymbolTable(table);
    return order;
}

TEST(Regroup, ScopesInOrderAndGroupsStable) {
    struct {
        std::vector<uint32_t> scopes;
        std::vector<unsigned> order;
    } const cases[] = {
        {{}, {}},
        {{1}, {0}},
        {{1, 5, 2, 5, 2}, {2, 4, 1, 3, 0}},
        // Constant inputs share a group with the others.
        {{3, 2, 3}, {0, 1, 2}},
        // Every scope backwards through the groups; what has no group of its own comes last.
        {{12, 0, 21, 11, 17, 16, 7, 15, 1, 20, 13, 19, 10, 9, 5, 6, 8, 4, 3},
         {18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 0, 1, 2, 3, 4}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Regroup(c.scopes), c.order) << testing::PrintToString(c.scopes);
    }
}

TEST(Regroup, WhatIsNoDeclarationComesLast) {
    SYMBOL_TABLE_TYP* table = CreateSymbolTable();
    table->list = lq::pouh::NewDeclList();
    DECL_TYP* const none = nullptr;
    ASSERT_NE(AddListElement(table->list, &none), nullptr);
    DECL_TYP* const decl = CreateDecl();
    decl->scope = DS_VAR;
    ASSERT_TRUE(lq::pouh::AddDecl(table->list, decl, LC_LAST));
    EXPECT_EQ(lq::pouh::RegroupByScope(*table), 1);
    EXPECT_EQ(lq::pouh::DeclAt(table->list, LC_FIRST), decl);
    EXPECT_EQ(CardinalityOfList(table->list), 2u);
    DestroySymbolTable(table);
}

}  // namespace
