#include <gtest/gtest.h>

#include "lq_data/pouh.h"
#include "pouh/record_access.h"

namespace {

struct ScopeCase {
    const char16_t* keyword;
    uint32_t scope;
};

constexpr ScopeCase kScopes[] = {
    {u"VAR", 1},
    {u"VAR_INPUT", 2},
    {u"VAR_INPUT CONSTANT", 3},
    {u"VAR_IN_EXT", 4},
    {u"VAR_OUTPUT", 5},
    {u"VAR_IN_OUT", 6},
    {u"VAR_RETAIN", 7},
    {u"VAR_INPUT_RETAIN", 8},
    {u"VAR_OUTPUT_RETAIN", 9},
    {u"VAR_EXTERNAL", 10},
    {u"VAR_GLOBAL", 11},
    {u"VAR_EXTERNAL_RETAIN", 13},
    {u"VAR_GLOBAL_RETAIN", 14},
    {u"VAR_CONSTANT", 15},
    {u"VAR_CONSTANT_RETAIN", 16},
    {u"VAR_GLOBAL_CONSTANT", 17},
    {u"VAR_GLOBAL_CONSTANT_RETAIN", 18},
    {u"VAR_EXTERNAL_CONSTANT", 19},
    {u"VAR_EXTERNAL_CONSTANT_RETAIN", 20},
    // Texts that are no keywords.
    {u"VAR_INPUT_CONSTANT", 0},
    {u"VAR_INPUT  CONSTANT", 0},
    {u"var_input", 0},
    {u"VAR_INPUT ", 0},
    {u" VAR", 0},
    {u"VA", 0},
    {u"", 0},
    {nullptr, 0},
};

TEST(DeclScope, KeywordsExactly) {
    for (int round = 0; round < 2; ++round) {
        for (const ScopeCase& c : kScopes) {
            EXPECT_EQ(GetDeclScope(c.keyword), c.scope)
                << "round " << round << ", " << testing::PrintToString(c.keyword);
            const char16_t* back = lq::pouh::KeywordOfScope(c.scope);
            EXPECT_EQ(std::u16string(back), c.scope != 0 ? c.keyword : u"") << c.scope;
        }
        LQHeadReleaseHashTable();
    }
}

}  // namespace
