// Checked arithmetic, and the extents of arrays, which it counts.
#include <vector>

#include <gtest/gtest.h>
#include <initializer_list>

#include "lq_data/types.h"
#include "tests/support/memory_jobs.h"

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

int Append(ArrInfo& info, uint32_t count, int multiply = 1) {
    ANY_INT_32 ext[2] = {{1, count + 1}, {0, count}};
    return info.AppendExt(&ext, multiply);
}

void Fill(ArrInfo& info, IEC_TYPE type, std::initializer_list<uint32_t> counts) {
    info.elemType = type;
    for (const uint32_t count : counts) {
        Append(info, count);
    }
}

// "type: counts = total", the counts from the first extent on.
std::string Describe(ArrInfo& info) {
    std::string text = std::to_string(info.elemType) + ":";
    ANY_INT_32 ext[2];
    int dims = 0;
    for (info.Clear(ArrInfo::CLEAR_CURSOR); info.GetExt(&ext, 0); ++dims) {
        EXPECT_TRUE(ext[0].sign == 1 && ext[0].magnitude == ext[1].magnitude + 1);
        text += " " + std::to_string(ext[1].magnitude);
    }
    EXPECT_EQ(info.GetDim(), dims);
    return text + (info.total.sign ? " = -" : " = ") + std::to_string(info.total.magnitude);
}

TEST(ArrayExtents, ReadsByIndexAndOnFromThere) {
    ArrInfo info;
    ANY_INT_32 ext[2] = {};
    EXPECT_EQ(info.GetExt(&ext, 1) + info.GetExt(&ext, 0), 0);
    Fill(info, IEC_INT, {10, 5, 2});
    struct {
        int index;
        uint32_t count;  // 0: there is none
    } const steps[] = {{0, 10}, {0, 5}, {1, 10}, {0, 5}, {0, 2}, {0, 0},  {-1, 0},
                       {2, 5},  {0, 2}, {3, 2},  {0, 0}, {4, 0}, {999, 0}};
    for (const auto& s : steps) {
        EXPECT_EQ(info.GetExt(&ext, s.index), s.count != 0) << s.index;
        EXPECT_TRUE(s.count == 0 || ext[1].magnitude == s.count) << s.index;
    }
}

// A total that is too large is reported, and the extent stays; a 256th one is refused.
TEST(ArrayExtents, Limits) {
    ArrInfo info;
    ArrInfo copy;
    EXPECT_EQ(Append(info, 65536), 1);
    EXPECT_EQ(Append(info, 65536), 0);
    EXPECT_EQ(Describe(info), "-1: 65536 65536 = 0");
    EXPECT_EQ(info.Copy(copy), 1);
    EXPECT_EQ(Describe(copy), "-1: 65536 65536 = 0");
    for (int i = 2; i < 255; ++i) {
        ASSERT_EQ(Append(info, 1), 1) << i;
    }
    EXPECT_EQ(Append(info, 1), 0);
    EXPECT_EQ(info.GetDim(), 255);
    EXPECT_EQ(info.Copy(copy), 1);
    EXPECT_EQ(Describe(copy), Describe(info));
}

TEST(ArrayExtents, ClearKnowsThreeModes) {
    ArrInfo info;
    for (const int mode : {-1, 3, 0, 1}) {
        info.Clear(ArrInfo::CLEAR_END);
        Fill(info, IEC_INT, {10, 5});
        info.total.sign = 1;
        const bool clears = mode == 0 || mode == 1;
        EXPECT_EQ(info.Clear(static_cast<ArrInfo::CLEAR_ID>(mode)), clears ? 1 : 0) << mode;
        ANY_INT_32 ext[2] = {};
        EXPECT_EQ(info.GetExt(&ext, 0), clears ? 0 : 1) << mode;
        EXPECT_EQ(Describe(info), clears ? "-1: = 1" : "2: 10 5 = -50") << mode;
    }
}

TEST(ArrayExtents, CopyIsIndependentAndRecomputesTheTotal) {
    ArrInfo from;
    ArrInfo to;
    Fill(from, IEC_REAL, {3});
    EXPECT_EQ(Append(from, 4, 0), 1);
    Fill(to, IEC_INT, {9, 9, 9});
    EXPECT_EQ(Describe(from), "9: 3 4 = 3");
    EXPECT_EQ(from.Copy(to), 1);
    from.Clear(ArrInfo::CLEAR_END);
    EXPECT_EQ(Describe(to), "9: 3 4 = 12");
    EXPECT_EQ(to.Copy(to), 1);
    EXPECT_EQ(Describe(to), "9: 3 4 = 12");
}

TEST(ArrayExtents, MoveExchangesTheListsAndCopiesTheRest) {
    ArrInfo from;
    ArrInfo to;
    Fill(from, IEC_REAL, {3, 4});
    Fill(to, IEC_INT, {9});
    from.total.sign = 1;
    EXPECT_EQ(from.Move(to), 1);
    EXPECT_EQ(Describe(from), "9: 9 = -12");
    EXPECT_EQ(Append(to, 7), 1);
    EXPECT_EQ(Describe(to), "9: 3 4 7 = -84");
}

TEST(ArrayExtents, WithoutMemoryTheExtentIsNotStored) {
    const auto make = [] {
        auto info = std::make_shared<ArrInfo>();
        Fill(*info, IEC_REAL, {2});
        return info;
    };
    lq::test::RunWithFailures("extent", make, [](ArrInfo& info) {
        const std::string before = Describe(info);
        const int isAppended = Append(info, 3);
        EXPECT_TRUE(isAppended || Describe(info) == before);
        return isAppended ? Describe(info) : lq::test::kShort;
    });
    ArrInfo from;
    Fill(from, IEC_REAL, {3, 4});
    lq::test::RunWithFailures("copy", make, [&from](ArrInfo& to) {
        return from.Copy(to) ? Describe(to) : lq::test::kShort;
    });
}

}  // namespace
