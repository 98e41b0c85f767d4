#include "types/ranges.h"

#include <map>

#include <gtest/gtest.h>

#include "lq_data/host/useradapt/user_adapter.h"
#include "lq_data/types.h"

namespace {

TEST(Ranges, IntegerConstants) {
    struct {
        bool negative;
        uint32_t magnitude;
        uint32_t integers;
        uint32_t bits;  // what the site's option adds
    } const cases[] = {
        // clang-format off
        {false, 0, 0x1FF, 0xF0000}, {false, 1, 0x1FF, 0xF0000},
        {false, 2, 0x1FE, 0xF0000}, {false, 127, 0x1FE, 0xF0000},
        {false, 128, 0x1FC, 0xF0000}, {false, 255, 0x1FC, 0xF0000},
        {false, 256, 0x1DC, 0xE0000}, {false, 32767, 0x1DC, 0xE0000},
        {false, 32768, 0x1D8, 0xE0000}, {false, 65535, 0x1D8, 0xE0000},
        {false, 65536, 0x198, 0xC0000}, {false, 2147483647, 0x198, 0xC0000},
        {false, 2147483648, 0x190, 0xC0000}, {false, 4294967295, 0x190, 0xC0000},
        {true, 0, 0xE, 0}, {true, 128, 0xE, 0}, {true, 129, 0xC, 0}, {true, 32768, 0xC, 0},
        {true, 32769, 0x8, 0}, {true, 2147483648, 0x8, 0}, {true, 2147483649, 0, 0},
        // clang-format on
    };
    for (const auto& c : cases) {
        EXPECT_EQ(lq::types::IntegerSet(c.negative, c.magnitude, false), c.integers)
            << c.negative << ' ' << c.magnitude;
        EXPECT_EQ(lq::types::IntegerSet(c.negative, c.magnitude, true), c.integers | c.bits)
            << c.negative << ' ' << c.magnitude;
    }
}

TEST(Ranges, BitStringConstants) {
    struct {
        uint32_t value;
        uint32_t bits;
        uint32_t integers;
    } const cases[] = {{0, 0xF0000, 0xC},     {255, 0xF0000, 0xC},   {256, 0xE0000, 0xC},
                       {65535, 0xE0000, 0xC}, {65536, 0xC0000, 0x8}, {0xFFFFFFFF, 0xC0000, 0x8}};
    for (const auto& c : cases) {
        EXPECT_EQ(lq::types::BitStringSet(c.value, false), c.bits) << c.value;
        EXPECT_EQ(lq::types::BitStringSet(c.value, true), c.bits | c.integers) << c.value;
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

TEST(Ranges, RealConstants) {
    // clang-format off
    struct { double value; uint32_t bits; } const cases[] = {
        {0.0, 0x600}, {1.0, 0x600}, {1e-40, 0x400}, {-1.0, 0x400}, {1e39, 0x400},
        {1.1754943508222875e-38, 0x600}, {1.1754943508222874e-38, 0x400},
        {3.4028234663852886e38, 0x600}, {3.4028234663852889e38, 0x400},
    };
    // clang-format on
    for (const auto& c : cases) {
        uint32_t bits = 0;
        DCE_GetRealConstRange(c.value, &bits);
        EXPECT_EQ(bits, c.bits) << c.value;
    }
}

TEST(Ranges, TypesAndSets) {
    struct {
        int32_t type;
        int32_t set;
        int32_t first;   // MapBitsetToType
        int32_t single;  // MapAllBitsetToType
    } const cases[] = {
        // clang-format off
        {0, 0x1, 0, 0}, {4, 0x10, 4, 4}, {11, 0x800, 11, 11}, {12, 0x1000, 12, 12},
        {13, 0x2000, 13, 13}, {14, 0x4000, 14, 37}, {15, 0x8000, 15, 15}, {18, 0x40000, 18, 18},
        {19, 0x80000, 19, 36}, {51, 0x100000, 51, 51}, {52, 0x200000, 52, 41},
        {53, 0x800000, 53, 42}, {64, 0x400000, 41, 41}, {-1, 0, -1, -1}, {20, 0, -1, -1},
        {50, 0, -1, -1},
        // The generic ones.
        {32, 0xFFFFFF, 0, 32}, {33, 0x7FE, 1, 33}, {34, 0x600, 9, 34}, {35, 0x1FE, 1, 35},
        {36, 0xF0001, 0, 36}, {37, 0x7000, 12, 37}, {38, 0x20044, 2, 38}, {39, 0x40088, 3, 39},
        {40, 0xFFFFF, 0, 40}, {41, 0x600000, 52, 41}, {42, 0xC00000, 53, 42},
        // clang-format on
    };
    for (const auto& c : cases) {
        EXPECT_EQ(MapTypeToBitset(c.type), c.set) << c.type;
        EXPECT_EQ(MapBitsetToType(c.set), c.first) << c.type;
        EXPECT_EQ(MapAllBitsetToType(c.set), c.single) << c.type;
    }
}

TEST(Ranges, CodesOfTheSecondNumbering) {
    const std::map<int32_t, uint32_t> sets = {
        {1, 0x1},       {2, 0x4},      {3, 0x8},       {4, 0x20000},  {5, 0x40000},
        {6, 0x200},     {7, 0x800},    {8, 0x8000},    {9, 0x200000}, {10, 0x100000},
        {15, 0x800000}, {16, 0x400},   {50, 0xFFFFFF}, {51, 0x7FE},   {52, 0xF0001},
        {53, 0x1FE},    {54, 0x20044}, {55, 0x40088},  {56, 0xFFFFF}, {57, 0x600},
    };
    for (int32_t code = -1; code < 70; ++code) {
        const auto set = sets.find(code);
        EXPECT_EQ(MapVarTypeToBitset(code),
                  static_cast<int32_t>(set != sets.end() ? set->second : 0))
            << code;
    }
}

TEST(Ranges, MixedSets) {
    // clang-format off
    struct { uint32_t set; IEC_TYPE single; uint32_t smallest; } const cases[] = {
        {0x6, IEC_ANY_INT, 0x2}, {0x1FE, IEC_ANY_INT, 0x2}, {0x90, IEC_ANY_INT, 0x80},
        {0x600, IEC_ANY_REAL, 0x200}, {0x204, IEC_ANY_NUM, 0x4}, {0x30000, IEC_ANY_BIT, 0x10000},
        {0x20004, IEC_ANY16, 0x4}, {0x40008, IEC_ANY32, 0x8}, {0x6000, IEC_ANY_DATE, 0x6000},
        {0x8800, IEC_ANY_SIMPLE, 0x8800}, {0x20008, IEC_ANY_SIMPLE, 0x20000},
        {0x80110, IEC_ANY_SIMPLE, 0x80110}, {0x10020, IEC_ANY_SIMPLE, 0x20},
        {0x40280, IEC_ANY_SIMPLE, 0x80}, {0x40200, IEC_ANY_SIMPLE, 0x40000},
        {0x100001, IEC_ANY, 0x1}, {0x300000, IEC_ANY, 0x300000}, {0xA00000, IEC_ANY, 0xA00000},
        {0xFF000000, IEC_NO_TYPE, 0xFF000000}, {0xFF000001, IEC_ANY, 0x1},
    };
    // clang-format on
    for (const auto& c : cases) {
        int32_t set = static_cast<int32_t>(c.set);
        EXPECT_EQ(MapAllBitsetToType(set), c.single) << std::hex << c.set;
        MapBitsetToMinSize(&set);
        EXPECT_EQ(static_cast<uint32_t>(set), c.smallest) << std::hex << c.set;
    }
}

}  // namespace
