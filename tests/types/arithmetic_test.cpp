#include <gtest/gtest.h>

#include "lq_data/types.h"

namespace {

constexpr int64_t kModulus = int64_t{1} << 32;

// The edges of the halves of a word, where carries go wrong.
constexpr uint32_t kEdges[] = {0,          1,          2,          3,          0x7FFF,
                               0xFFFF,     0x10000,    0x10001,    0x7FFFFFFF, 0x80000000,
                               0xFFFF0000, 0xFFFF0001, 0xFFFFFFFE, 0xFFFFFFFF};

int64_t ValueOf(ANY_INT_32 v) {
    return v.sign ? -int64_t{v.magnitude} : int64_t{v.magnitude};
}

// Sums, differences and products are those of 64 bits, modulo 2^32; products keep the first sign.
TEST(Arithmetic, IsThatOf64Bits) {
    for (const uint32_t x : kEdges) {
        for (const uint32_t y : kEdges) {
            for (int signs = 0; signs < 8; ++signs) {
                SCOPED_TRACE(testing::Message() << x << ' ' << y << ' ' << signs);
                const ANY_INT_32 a{signs & 1, x};
                const ANY_INT_32 b{(signs >> 1) & 1, y};
                const int op = signs >> 2;
                const int64_t sum = ValueOf(a) + (op ? -ValueOf(b) : ValueOf(b));
                const int64_t size = sum < 0 ? -sum : sum;
                ANY_INT_32 result = a;
                EXPECT_EQ(AddSub32(op, result, b), size < kModulus ? 1 : 0);
                EXPECT_EQ(result.magnitude, size % kModulus);
                EXPECT_EQ(result.sign, sum < 0 && result.magnitude != 0);
                const uint64_t product = uint64_t{x} * y;
                result = a;
                EXPECT_EQ(Mul32(result, b), product < uint64_t{kModulus} ? 1 : 0);
                EXPECT_EQ(result.magnitude, static_cast<uint32_t>(product));
                EXPECT_EQ(result.sign, a.sign);
            }
        }
    }
}

}  // namespace
