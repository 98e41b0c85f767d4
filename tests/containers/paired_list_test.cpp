#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "containers/list_access.h"
#include "lq_data/containers.h"
#include "lq_data/host/text/utf.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/test_allocator.h"

namespace {

using lq::containers::ListAccess;
using lq::test::kShort;
using lq::test::RunWithFailures;

bool Check(_ASSAY* assay) {
    FLIST* list1 = GetListOfAssay(assay, 1);
    FLIST* list2 = GetListOfAssay(assay, 2);
    return ListAccess::Check(*list1) && ListAccess::Check(*list2) &&
           CardinalityOfList(list1) == CardinalityOfList(list2);
}

int IsSecond(FLIST*, uint32_t position, void*, void*, int32_t param) {
    EXPECT_EQ(param, 0);
    return position == 2;
}

TEST(PairedList, SizesWalkThePairs) {
    _ASSAY* assay = CreateAssay(0, LET_STRING, 4, LET_SIGNED_8, 4, nullptr);
    for (const char16_t* text : {u"a", u"four", u""}) {
        const int32_t number = 7;
        InsertElementOfAssay(assay, text, &number, LC_LAST, 0);
    }
    const uint32_t kTextSizes[] = {2, 5, 1};
    uint32_t pairs = 0;
    uint32_t size1 = 0;
    uint32_t size2 = 0;
    for (uint32_t i = SizeOfElementOfAssay(assay, &size1, &size2, LC_FIRST, 0); i != 0;
         i = SizeOfElementOfAssay(assay, &size1, &size2, LC_NEXT, 0)) {
        ASSERT_EQ(i, ++pairs);
        EXPECT_EQ(size1, kTextSizes[i - 1]);
        EXPECT_EQ(size2, 4u);
    }
    EXPECT_EQ(pairs, 3u);
    EXPECT_EQ(SizeOfElementOfAssay(assay, nullptr, nullptr, LC_REWIND, 0), 0u);
    EXPECT_EQ(SizeOfElementOfAssay(assay, nullptr, nullptr, IsSecond, 0), 2u);
    // Each list is asked by itself; only in the second there is a seven.
    const auto isSeven = [](FLIST*, uint32_t, void* element, void*, int32_t) {
        return *static_cast<int16_t*>(element) == 7 ? 1 : 0;
    };
    EXPECT_EQ(SizeOfElementOfAssay(assay, nullptr, &size2, isSeven, 0), 3u);
    DestroyAssay(assay);
    // Sizes are those of the creation, sorted or not.
    assay = CreateAssay(0, LET_MEMORY, 3, LET_MEMORY, 5, nullptr);
    InsertElementOfAssay(assay, "abc", "defgh", LC_LAST, 0);
    EXPECT_EQ(SortElementOfAssay(assay, LC_FIRST, 0), 1u);
    EXPECT_EQ(SizeOfElementOfAssay(assay, &size1, &size2, LC_FIRST, 0), 1u);
    EXPECT_TRUE(size1 == 3 && size2 == 5 && assay->size1 == 3 && assay->size2 == 5);
    DestroyAssay(assay);
}

TEST(PairedList, InvalidTables) {
    _ASSAY* const halfBuilt = CreateAssay(4, LET_STRING, 4, LET_CHAR, 4, nullptr);
    _ASSAY other;
    other.magic = 0;
    for (_ASSAY* assay : {static_cast<_ASSAY*>(nullptr), &other, halfBuilt}) {
        const bool isTable = assay == halfBuilt;
        int32_t number = 1;
        const uint32_t kResults[] = {
            InsertElementOfAssay(assay, u"a", &number, LC_LAST, 0),
            FindElementOfAssay(assay, nullptr, nullptr, LC_FIRST, 0),
            FindElementOfAssay(assay, nullptr, nullptr, LC_REWIND, 0),
            WriteElementOfAssay(assay, u"a", &number, LC_FIRST, 0),
            RemoveElementOfAssay(assay, nullptr, nullptr, LC_FIRST, 0),
            SizeOfElementOfAssay(assay, nullptr, nullptr, LC_FIRST, 0),
            SortElementOfAssay(assay, LC_FIRST, 0),
            CardinalityOfAssay(assay),
        };
        EXPECT_THAT(kResults, testing::Each(0u));
        EXPECT_EQ(SetUserDataOfAssay(assay, &number), isTable ? 4u : 0u);
        EXPECT_EQ(GetUserDataOfAssay(assay, &number), isTable ? 4u : 0u);
        EXPECT_EQ(GetListOfAssay(assay, 3), nullptr);
        EXPECT_EQ(DestroyAssay(assay), isTable ? 1 : 0);
    }
}

// Of lists, too. It is zero at first, and stays as it is where none is given.
TEST(PairedList, UserDataOfAnySize) {
    for (const uint32_t size : {0u, 1u, 4u, 8u, 9u, 1000u}) {
        SCOPED_TRACE(size);
        _ASSAY* assay = CreateAssay(size, LET_STRING, 0, LET_STRING, 0, nullptr);
        FLIST* list = CreateList(size, LET_SIGNED_8, 4, nullptr);
        for (const char in : {'\0', 'u'}) {
            std::string out[2] = {std::string(size, '?'), std::string(size, '?')};
            if (in != 0) {
                EXPECT_EQ(SetUserDataOfAssay(assay, std::string(size, in).data()), size);
                EXPECT_EQ(SetUserDataOfList(list, std::string(size, in).data()), 1);
            }
            EXPECT_EQ(SetUserDataOfAssay(assay, nullptr), 0u);
            EXPECT_EQ(SetUserDataOfList(list, nullptr), size == 0 ? 1 : 0);
            EXPECT_EQ(GetUserDataOfAssay(assay, nullptr), 0u);
            EXPECT_EQ(GetUserDataOfList(list, nullptr), size == 0 ? 1 : 0);
            EXPECT_EQ(GetUserDataOfAssay(assay, out[0].data()), size);
            EXPECT_EQ(GetUserDataOfList(list, out[1].data()), 1);
            EXPECT_EQ(out[0], std::string(size, in));
            EXPECT_EQ(out[1], std::string(size, in));
        }
        DestroyAssay(assay);
        DestroyList(list);
    }
}

// By place the second write goes on when the first has got no memory; by comparison it does not.
TEST(PairedList, WritingWithoutMemory) {
    const struct {
        LIST_CALLBACK code;
        int64_t failing;
        uint32_t result;
        const char16_t* first;
        const char16_t* second;
    } kCases[] = {
        {LC_FIRST, 1, 1, u"", u"y"},
        {LC_FIRST, 2, 0, u"x", u""},
        {LC_NOT_LESS, 1, 0, u"", u"b"},
        {LC_NOT_LESS, 2, 0, u"x", u""},
    };
    for (const auto& c : kCases) {
        _ASSAY* assay = CreateAssay(0, LET_STRING, 0, LET_STRING, 0, nullptr);
        InsertElementOfAssay(assay, u"a", u"b", LC_LAST, 0);
        {
            const lq::test::FailingAllocation failing(c.failing, false);
            EXPECT_EQ(WriteElementOfAssay(assay, u"x", u"y", c.code, 1), c.result);
        }
        char16_t first[2];
        char16_t second[2];
        FindElementOfAssay(assay, first, second, LC_FIRST, 0);
        EXPECT_EQ(first, std::u16string(c.first)) << (c.code == LC_FIRST) << " " << c.failing;
        EXPECT_EQ(second, std::u16string(c.second)) << (c.code == LC_FIRST) << " " << c.failing;
        DestroyAssay(assay);
    }
}

std::string Describe(_ASSAY* assay) {
    EXPECT_TRUE(Check(assay));
    std::string text;
    char16_t first[8];
    char16_t second[8];
    for (LIST_CALLBACK code = LC_FIRST; FindElementOfAssay(assay, first, second, code, 0);
         code = LC_NEXT) {
        text += lq::host::EncodeUtf8(first) + "=" + lq::host::EncodeUtf8(second) + " ";
    }
    return text;
}

TEST(PairedList, WithoutMemoryThePairsStay) {
    const auto make = [] {
        std::shared_ptr<_ASSAY> assay(CreateAssay(16, LET_STRING, 0, LET_STRING, 0, nullptr),
                                      DestroyAssay);
        for (int i = 0; i < 20; ++i) {  // as many as the nodes that a list takes at once
            InsertElementOfAssay(assay.get(), u"key", u"value", LC_LAST, 0);
        }
        InsertElementOfAssay(assay.get(), u"last", u"1", LC_LAST, 0);
        return assay;
    };
    RunWithFailures("sort", make, [](_ASSAY& assay) {
        const std::string before = Describe(&assay);
        const bool isSorted = SortElementOfAssay(&assay, LC_FIRST, 0) != 0;
        EXPECT_TRUE(isSorted || Describe(&assay) == before);
        return isSorted ? Describe(&assay) : kShort;
    });
    // Behind the end of the nodes at hand, too: without memory for a text its element holds none,
    // so that only what finds no node fails.
    lq::test::FailEachAllocation([](const auto& failing) {
        _ASSAY* assay = CreateAssay(16, LET_STRING, 0, LET_STRING, 0, nullptr);
        const bool made = assay && GetListOfAssay(assay, 1) && GetListOfAssay(assay, 2);
        EXPECT_TRUE(made || failing.HasFailed());
        for (int i = 0; made && i < 22; ++i) {
            InsertElementOfAssay(assay, u"key", u"value", i % 2 == 0 ? LC_LAST : LC_NOT_LESS, 2);
            EXPECT_TRUE(Check(assay));
        }
        DestroyAssay(assay);
    });
}

}  // namespace
