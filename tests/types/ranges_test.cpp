#include "types/ranges.h"

#include <cstdlib>
#include <map>

#include <gtest/gtest.h>

#include "lq_data/host/useradapt/user_adapter.h"
#include "lq_data/types.h"
#include "tests/support/rows.h"

namespace {

using lq::test::Row;
using lq::test::Rows;
using lq::types::BitStringSet;
using lq::types::IntegerSet;

TEST(Ranges, IntegerAndBitStringConstants) {
    for (const Row& row : Rows("types/types.rows", "integers")) {
        const bool isNegative = row[0][0] == '-';
        const auto magnitude = static_cast<uint32_t>(std::abs(row.Number(0)));
        const auto integers = static_cast<uint32_t>(row.Number(1));
        EXPECT_EQ(IntegerSet(isNegative, magnitude, false), integers) << row.line;
        EXPECT_EQ(IntegerSet(isNegative, magnitude, true), integers | row.Number(2)) << row.line;
    }
    for (const Row& row : Rows("types/types.rows", "bit strings")) {
        const auto value = static_cast<uint32_t>(row.Number(0));
        EXPECT_EQ(BitStringSet(value, false), row.Number(1)) << row.line;
        EXPECT_EQ(BitStringSet(value, true), row.Number(1) | row.Number(2)) << row.line;
    }
}

TEST(Ranges, TheSiteIsAskedOnce) {
    uint32_t integer = 0;
    uint32_t bits = 0;
    DCE_GetIntConstRange(0, 300, &integer);
    DCE_GetBOHConstRange(300, &bits);
    EXPECT_EQ(bits, 0xE000Cu) << "with the default answer bit strings may be integers";
    EXPECT_EQ(integer, 0x1DCu) << "and integers no bit strings";
    lq::host::GetUserAdapterAnswers() = {1, 1, 0};
    uint32_t again = 0;
    DCE_GetIntConstRange(0, 300, &again);
    EXPECT_EQ(again, integer);
    DCE_GetBOHConstRange(300, &again);
    EXPECT_EQ(again, bits);
    DCE_GetIntConstRange(1, 300, &again);
    EXPECT_EQ(again, 0xCu);
    lq::host::GetUserAdapterAnswers() = {};
}

// In a process of its own, which has not asked yet.
TEST(RangesDeathTest, TheSiteChooses) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto tell = [] {
        lq::host::GetUserAdapterAnswers() = {1, 1, 0};
        uint32_t sets[2] = {};
        DCE_GetIntConstRange(0, 300, &sets[0]);
        DCE_GetBOHConstRange(300, &sets[1]);
        std::_Exit(sets[0] == 0xE01DC && sets[1] == 0xE0000 ? 0 : 1);
    };
    EXPECT_EXIT(tell(), testing::ExitedWithCode(0), "");
}

TEST(Ranges, RealConstants) {
    for (const Row& row : Rows("types/types.rows", "reals")) {
        uint32_t bits = 0;
        DCE_GetRealConstRange(std::stod(row[0]), &bits);
        EXPECT_EQ(bits, row.Number(1)) << row.line;
    }
}

TEST(Ranges, TypesAndSets) {
    const auto set = [](const Row& row, size_t column) {
        return static_cast<int32_t>(static_cast<uint32_t>(row.Number(column)));
    };
    for (const Row& row : Rows("types/types.rows", "types and sets")) {
        EXPECT_EQ(MapTypeToBitset(set(row, 0)), set(row, 1)) << row.line;
        EXPECT_EQ(MapBitsetToType(set(row, 1)), row.Number(2)) << row.line;
        EXPECT_EQ(MapAllBitsetToType(set(row, 1)), row.Number(3)) << row.line;
    }
    for (const Row& row : Rows("types/types.rows", "mixed sets")) {
        int32_t smallest = set(row, 0);
        EXPECT_EQ(MapAllBitsetToType(smallest), row.Number(1)) << row.line;
        MapBitsetToMinSize(&smallest);
        EXPECT_EQ(smallest, set(row, 2)) << row.line;
    }
    std::map<int32_t, int32_t> sets;
    for (const Row& row : Rows("types/types.rows", "second numbering")) {
        sets[set(row, 0)] = set(row, 1);
    }
    for (int32_t code = -1; code < 70; ++code) {
        EXPECT_EQ(MapVarTypeToBitset(code), sets[code]) << code;
    }
}

}  // namespace
