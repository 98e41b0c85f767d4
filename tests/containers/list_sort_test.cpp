#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "containers/list_access.h"
#include "lq_data/containers.h"
#include "tests/support/memory_jobs.h"

namespace {

using lq::containers::ListAccess;
using lq::test::Attempt;
using lq::test::kShort;
using lq::test::RunWithFailures;
using Numbers = std::vector<int32_t>;

FLIST* ListOf(const Numbers& numbers) {
    FLIST* list = CreateList(0, LET_SIGNED_8, 4, nullptr);
    for (const int32_t number : numbers) {
        InsertElementOfList(list, &number, LC_LAST, 0);
    }
    return list;
}

Numbers NumbersOf(FLIST* list) {
    Numbers numbers;
    void* slot;
    for (uint32_t i = ListGet(list, slot, nullptr, LC_FIRST, 0); i != 0;
         i = ListGet(list, slot, nullptr, LC_NEXT, 0)) {
        numbers.push_back(*static_cast<int32_t*>(slot));
    }
    return numbers;
}

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
        FLIST* list = ListOf(numbers);
        std::sort(numbers.begin(), numbers.end());
        EXPECT_EQ(SortElementOfList(list, LC_EQUAL, 0), n);
        EXPECT_TRUE(ListAccess::Check(*list));
        EXPECT_EQ(ListAccess::CurrentIndex(*list), n);
        EXPECT_EQ(NumbersOf(list), numbers);

        std::reverse(numbers.begin(), numbers.end());
        EXPECT_EQ(SortElementOfList(list, Descending, 77), n);
        EXPECT_EQ(NumbersOf(list), numbers);
        DestroyList(list);
    }
}

std::vector<std::pair<int32_t, int32_t>> compared;

// With elements in order nothing moves, so the values are the indices.
TEST(ListSort, MergeExchangeComparesTheNetworksPairs) {
    const struct {
        Numbers numbers;
        std::vector<std::pair<int32_t, int32_t>> pairs;
    } kCases[] = {
        {{0, 1}, {{0, 1}}},
        {{0, 1, 2}, {{0, 2}, {0, 1}, {1, 2}}},
        {{0, 1, 2, 3}, {{0, 2}, {1, 3}, {0, 1}, {2, 3}, {1, 2}}},
        {{0, 1, 2, 3, 4}, {{0, 4}, {0, 2}, {1, 3}, {2, 4}, {0, 1}, {2, 3}, {1, 4}, {1, 2}, {3, 4}}},
    };
    for (const auto& c : kCases) {
        FLIST* list = ListOf(c.numbers);
        compared.clear();
        const auto record = [](FLIST*, uint32_t, void* a, void* b, int32_t) {
            compared.emplace_back(*static_cast<int32_t*>(a), *static_cast<int32_t*>(b));
            return 0;
        };
        SortElementOfList(list, record, 0);
        EXPECT_EQ(compared, c.pairs) << c.numbers.size();
        DestroyList(list);
    }
}

TEST(ListSort, TextsMoveWithTheirElements) {
    FLIST* list = CreateList(0, LET_STRING_NOCASE, 0, nullptr);
    for (const char16_t* text : {u"b", u"C", u"a", u"B"}) {
        InsertElementOfList(list, text, LC_LAST, 0);
    }
    const auto texts = [&] {
        std::u16string all;
        for (int32_t i = 1; i <= 4; ++i) {
            char16_t text[4];
            FindElementOfList(list, text, nullptr, LC_AT_INDEX, i);
            all += text;
        }
        return all;
    };
    EXPECT_EQ(list->Sort(LC_FIRST, 0), 4u);
    EXPECT_EQ(texts(), u"BaCb");
    EXPECT_EQ(list->Sort(LC_NOT_LESS, 0), 4u);
    EXPECT_EQ(texts(), u"abBC");
    EXPECT_EQ(SortElementOfList(list, LC_EQUAL, 0), 4u);
    EXPECT_TRUE(texts() == u"abBC" || texts() == u"aBbC");
    DestroyList(list);
}

// Of more elements than one page of the sort holds.
TEST(ListSort, WithoutMemoryTheOrderStays) {
    Numbers descending(3 * 255);
    std::iota(descending.rbegin(), descending.rend(), 0);
    const auto describe = [](FLIST* list) {
        EXPECT_TRUE(ListAccess::Check(*list));
        std::string text;
        for (const int32_t number : NumbersOf(list)) {
            text += std::to_string(number) + " ";
        }
        return text;
    };
    RunWithFailures({"sort", [&]() -> Attempt {
                         const std::shared_ptr<FLIST> list(ListOf(descending), DestroyList);
                         return [=] {
                             const std::string before = describe(list.get());
                             if (SortElementOfList(list.get(), LC_EQUAL, 0) != 0) {
                                 return describe(list.get());
                             }
                             EXPECT_EQ(describe(list.get()), before);
                             return kShort;
                         };
                     }});
}

}  // namespace
