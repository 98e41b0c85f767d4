#include "lq_data/detail/chars.h"

#include <gtest/gtest.h>

#include "lq_data/memory.h"
#include "tests/support/rows.h"

namespace {

using namespace lq::chars;

TEST(Chars, ClassesAndCase) {
    for (const auto& row : lq::test::Rows("frame/frame.rows", "classes")) {
        SCOPED_TRACE(row.line);
        const char16_t c = row.Wide(0)[0];
        EXPECT_EQ(IsLetter(c), row[1] == "letter");
        EXPECT_EQ(IsSpace(c), row[1] == "space");
        EXPECT_EQ(ToUpper(c), row.Wide(2)[0]);
        EXPECT_EQ(ToLower(c), row.Wide(3)[0]);
    }
}

TEST(Chars, ComparisonWithoutCase) {
    for (const auto& row : lq::test::Rows("frame/frame.rows", "order without case")) {
        const std::u16string a = row.Wide(0), b = row.Wide(1);
        const int order = CompareNoCase(a.c_str(), b.c_str());
        EXPECT_EQ((order > 0) - (order < 0), row.Number(2)) << row.line;
        EXPECT_EQ(CompareNoCase(b.c_str(), a.c_str()), -order) << row.line;
    }
}

TEST(Memory, AnArrayThatNoSizeCounts) {
    EXPECT_EQ(lq::AllocateArray<uint32_t>(static_cast<std::size_t>(-1) / 2), nullptr);
    lq::Delete(static_cast<int*>(nullptr));
}

}  // namespace
