#include "lq_data/detail/chars.h"

#include <gtest/gtest.h>

#include "lq_data/memory.h"

namespace {

using namespace lq::chars;

TEST(Chars, ClassesAndCase) {
    const struct {
        char16_t c;
        bool isLetter;
        bool isSpace;
        char16_t upper;
        char16_t lower;
    } kCases[] = {
        {u'a', true, false, u'A', u'a'},
        {u'_', false, false, u'_', u'_'},
        {u'\v', false, true, u'\v', u'\v'},
        {u'\u00E4', true, false, u'\u00C4', u'\u00E4'},
        {u'\u0130', true, false, u'\u0130', u'i'},
        {u'\u2003', false, true, u'\u2003', u'\u2003'},
        {u'\r', false, true, u'\r', u'\r'},
        {u'\x0E', false, false, u'\x0E', u'\x0E'},
        {u'\u0080', false, false, u'\u0080', u'\u0080'},
        // Halves of a character are none.
        {0xD800, false, false, 0xD800, 0xD800},
        {0xDFFF, false, false, 0xDFFF, 0xDFFF},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(static_cast<unsigned>(c.c));
        EXPECT_EQ(IsLetter(c.c), c.isLetter);
        EXPECT_EQ(IsSpace(c.c), c.isSpace);
        EXPECT_EQ(ToUpper(c.c), c.upper);
        EXPECT_EQ(ToLower(c.c), c.lower);
    }
}

TEST(Chars, ComparisonWithoutCase) {
    // clang-format off
    const struct { const char16_t* a; const char16_t* b; int order; } kCases[] = {
        {u"Motor", u"mOTOR", 0}, {u"\u03C3", u"\u03A3", 0}, {u"a_", u"aA", -1}, {u"a_", u"a`", -1},
        {u"a", u"ab", -1}, {u"b", u"A", 1}, {u"\u0130", u"i", 1},  // two upper-case forms, one lower-case
    };
    // clang-format on
    for (const auto& c : kCases) {
        const int order = CompareNoCase(c.a, c.b);
        EXPECT_EQ((order > 0) - (order < 0), c.order) << testing::PrintToString(c.a);
        EXPECT_EQ(CompareNoCase(c.b, c.a), -order) << testing::PrintToString(c.a);
    }
}

TEST(Memory, AnArrayThatNoSizeCounts) {
    EXPECT_EQ(lq::AllocateArray<uint32_t>(static_cast<std::size_t>(-1) / 2), nullptr);
    lq::Delete(static_cast<int*>(nullptr));
}

}  // namespace
