#include <gtest/gtest.h>

#include "lq_data/types.h"

namespace {

class Sizes : public testing::Test {
  protected:
    ~Sizes() override { IecTypeSize restore(sizes_.GetDftSize()); }

    IecTypeSize sizes_;
};

TEST_F(Sizes, Defaults) {
    struct {
        int32_t id;
        int32_t slot;
        uint32_t size;
    } const cases[] = {
        {-1, -1, 0},  {0, 0, 1},   {1, -1, 1},  {4, -1, 8},  {10, -1, 8}, {11, 1, 12},
        {15, 5, 256}, {16, -1, 1}, {19, -1, 8}, {20, -1, 0}, {32, 6, 12}, {42, 16, 4},
        {43, -1, 0},  {50, 17, 4}, {51, -1, 0}, {64, -1, 0},
    };
    for (const auto& c : cases) {
        const IEC_TYPE id = static_cast<IEC_TYPE>(c.id);
        EXPECT_EQ(sizes_.TypeToIdx(id), c.slot) << c.id;
        EXPECT_EQ(sizes_.Get(id), c.size) << c.id;
        EXPECT_EQ(sizes_.Set(id, 77), c.slot >= 0 ? 1 : 0) << c.id;
        EXPECT_EQ(sizes_.Get(id), c.slot >= 0 ? 77 : c.size) << c.id;
    }
}

TEST_F(Sizes, OneTableServesEveryUser) {
    uint32_t table[18];
    for (uint32_t i = 0; i < 18; ++i) {
        table[i] = 100 + i;
    }
    IecTypeSize other(&table);
    EXPECT_EQ(sizes_.Get(IEC_STRING), 105u);
    EXPECT_EQ(sizes_.Get(IEC_LINT), 8u);
    EXPECT_EQ(other.Set(IEC_STRING, 80), 1);
    EXPECT_EQ(sizes_.Get(IEC_STRING), 80u);
    IecTypeSize defaults(sizes_.GetDftSize());
    EXPECT_EQ(sizes_.Get(IEC_STRING), 256u);
    EXPECT_EQ(sizes_.Get(IEC_SIZE_ONLY), 4u);
}

}  // namespace
