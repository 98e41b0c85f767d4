#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lq_data/host/text/utf.h"
#include "tests/containers/list_util.h"
#include "tests/support/memory_jobs.h"

namespace lq::test {
namespace {

int Descending(FLIST*, uint32_t position, void* a, void* b, int32_t param) {
    EXPECT_EQ(position, 0u);
    EXPECT_EQ(param, 77);
    return *static_cast<int32_t*>(a) < *static_cast<int32_t*>(b) ? 5 : -5;
}

TEST(ListSort, MergeExchangeSortsEveryLength) {
    std::mt19937 random(3);
    std::vector<std::size_t> lengths = {254, 255, 256, 510, 511, 2100};  // pages hold 255
    for (std::size_t n = 0; n <= 40; ++n) {
        lengths.push_back(n);
    }
    for (const std::size_t n : lengths) {
        SCOPED_TRACE(testing::Message() << n << " elements");
        Numbers numbers(n);
        for (int32_t& number : numbers) {
            number = static_cast<int32_t>(random() % (n + 1)) - 5;
        }
        const TestList list(numbers);
        std::sort(numbers.begin(), numbers.end());
        EXPECT_EQ(SortElementOfList(list, LC_EQUAL, 0), n);
        EXPECT_TRUE(ListAccess::Check(*list));
        EXPECT_EQ(ListAccess::CurrentIndex(*list), n);
        EXPECT_EQ(list.All(), numbers);

        std::reverse(numbers.begin(), numbers.end());
        EXPECT_EQ(SortElementOfList(list, Descending, 77), n);
        EXPECT_EQ(list.All(), numbers);
    }
}

std::vector<std::pair<int32_t, int32_t>> compared;

// With elements in order nothing moves, so the values are the indices.
TEST(ListSort, MergeExchangeComparesTheNetworksPairs) {
    // clang-format off
    const struct { Numbers numbers; std::vector<std::pair<int32_t, int32_t>> pairs; } kCases[] = {
        {{0, 1}, {{0, 1}}}, {{0, 1, 2}, {{0, 2}, {0, 1}, {1, 2}}},
        {{0, 1, 2, 3}, {{0, 2}, {1, 3}, {0, 1}, {2, 3}, {1, 2}}},
        {{0, 1, 2, 3, 4}, {{0, 4}, {0, 2}, {1, 3}, {2, 4}, {0, 1}, {2, 3}, {1, 4}, {1, 2}, {3, 4}}},
    };
    // clang-format on
    for (const auto& c : kCases) {
        const TestList list(c.numbers);
        compared.clear();
        const auto record = [](FLIST*, uint32_t, void* a, void* b, int32_t) {
            compared.emplace_back(*static_cast<int32_t*>(a), *static_cast<int32_t*>(b));
            return 0;
        };
        SortElementOfList(list, record, 0);
        EXPECT_EQ(compared, c.pairs) << c.numbers.size();
    }
}

TEST(ListSort, TextsMoveWithTheirElements) {
    const TestList list(LET_STRING_NOCASE);
    for (const char16_t* text : {u"b", u"C", u"a", u"B"}) {
        InsertElementOfList(list, text, LC_LAST, 0);
    }
    const auto texts = [&list] {
        return TextAt(list, 1) + TextAt(list, 2) + TextAt(list, 3) + TextAt(list, 4);
    };
    EXPECT_EQ(list->Sort(LC_FIRST, 0), 4u);
    EXPECT_EQ(texts(), u"BaCb");
    EXPECT_EQ(list->Sort(LC_NOT_LESS, 0), 4u);
    EXPECT_EQ(texts(), u"abBC");
    EXPECT_EQ(SortElementOfList(list, LC_EQUAL, 0), 4u);
    EXPECT_TRUE(texts() == u"abBC" || texts() == u"aBbC");
}

// Of more elements than one page of the sort holds.
TEST(ListSort, WithoutMemoryTheOrderStays) {
    Numbers descending(3 * 255);
    std::iota(descending.rbegin(), descending.rend(), 0);
    const auto make = [&] { return std::make_shared<TestList>(descending); };
    const auto makeTexts = [] {
        auto list = std::make_shared<TestList>(LET_STRING);
        InsertElementOfList(*list, u"b", LC_LAST, 0);
        InsertElementOfList(*list, u"a", LC_LAST, 0);
        return list;
    };
    RunWithFailures("texts by insertion", makeTexts, [](const TestList& list) {
        const bool isSorted = list->Sort(LC_NOT_LESS, 0) != 0;
        EXPECT_EQ(CardinalityOfList(list), 2u);
        EXPECT_TRUE(isSorted || TextAt(list, 1) + TextAt(list, 2) == u"ba" ||
                    TextAt(list, 1) == u"a");
        return isSorted ? lq::host::EncodeUtf8(TextAt(list, 1) + TextAt(list, 2)) : kShort;
    });
    RunWithFailures("sort", make, [](const TestList& list) {
        const Numbers before = list.All();
        const bool isSorted = SortElementOfList(list, LC_EQUAL, 0) != 0;
        EXPECT_TRUE(ListAccess::Check(*static_cast<FLIST*>(list)));
        EXPECT_TRUE(isSorted || list.All() == before);
        return isSorted ? testing::PrintToString(list.All()) : kShort;
    });
}

}  // namespace
}  // namespace lq::test
