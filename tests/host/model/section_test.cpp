#include "host/model/section.h"

#include <string_view>

#include <gtest/gtest.h>

#include "host/text/utf.h"

namespace {

using namespace lq::host;

TEST(Section, HasTheNearestKeyword) {
    constexpr struct {
        Section section;
        std::u16string_view keyword;
        bool exact;
    } kCases[] = {
        {{Scope::kLocal, false, false}, u"VAR", true},
        {{Scope::kLocal, true, true}, u"VAR_CONSTANT_RETAIN", true},
        {{Scope::kTemp, false, false}, u"VAR", true},
        {{Scope::kTemp, false, true}, u"VAR", false},
        {{Scope::kInput, true, false}, u"VAR_INPUT CONSTANT", true},
        {{Scope::kInput, false, true}, u"VAR_INPUT_RETAIN", true},
        {{Scope::kInput, true, true}, u"VAR_INPUT CONSTANT", false},
        {{Scope::kInExt, true, true}, u"VAR_IN_EXT", false},
        {{Scope::kOutput, true, false}, u"VAR_OUTPUT", false},
        {{Scope::kOutput, true, true}, u"VAR_OUTPUT_RETAIN", false},
        {{Scope::kInOut, true, true}, u"VAR_IN_OUT", false},
        {{Scope::kExternal, true, false}, u"VAR_EXTERNAL_CONSTANT", true},
        {{Scope::kExternal, false, true}, u"VAR_EXTERNAL_RETAIN", true},
        {{Scope::kGlobal, true, true}, u"VAR_GLOBAL_CONSTANT_RETAIN", true},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(std::u16string_view(KeywordOf(c.section)), c.keyword) << EncodeUtf8(c.keyword);
        EXPECT_EQ(NearestSection(c.section) == c.section, c.exact) << EncodeUtf8(c.keyword);
    }
}

}  // namespace
