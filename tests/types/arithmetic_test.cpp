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

TEST(Arithmetic, SumsAndDifferencesAreThoseOf64Bits) {
    for (const uint32_t x : kEdges) {
        for (const uint32_t y : kEdges) {
            for (int signs = 0; signs < 8; ++signs) {
                ANY_INT_32 a{signs & 1, x};
                const ANY_INT_32 b{(signs >> 1) & 1, y};
                const int op = signs >> 2;
                const int64_t sum = ValueOf(a) + (op ? -ValueOf(b) : ValueOf(b));
                const int64_t size = sum < 0 ? -sum : sum;
                const int result = AddSub32(op, a, b);
                EXPECT_EQ(result, size < kModulus ? 1 : 0) << x << ' ' << y << ' ' << signs;
                EXPECT_EQ(a.magnitude, size % kModulus) << x << ' ' << y << ' ' << signs;
                EXPECT_EQ(a.sign, sum < 0 && a.magnitude != 0) << x << ' ' << y << ' ' << signs;
            }
        }
    }
}

TEST(Arithmetic, ProductsKeepTheSignAndWrap) {
    for (const uint32_t x : kEdges) {
        for (const uint32_t y : kEdges) {
            ANY_INT_32 a{1, x};
            const uint64_t product = uint64_t{x} * y;
            EXPECT_EQ(Mul32(a, {1, y}), product < uint64_t{kModulus} ? 1 : 0) << x << ' ' << y;
            EXPECT_EQ(a.magnitude, product % uint64_t{kModulus}) << x << ' ' << y;
            EXPECT_EQ(a.sign, 1) << x << ' ' << y;
        }
    }
}

}  // namespace
