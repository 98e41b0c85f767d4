#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "containers/list_access.h"
#include "host/text/utf.h"
#include "lq_data/containers.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/test_allocator.h"

namespace {

using lq::containers::ListAccess;
using lq::test::Attempt;
using lq::test::kShort;
using lq::test::RunWithFailures;
using Pair = std::pair<std::u16string, int32_t>;
using Pairs = std::vector<Pair>;

_ASSAY* TableOf(const Pairs& pairs) {
    _ASSAY* assay = CreateAssay(0, LET_STRING, 4, LET_SIGNED_8, 4, nullptr);
    for (const auto& [text, number] : pairs) {
        InsertElementOfAssay(assay, text.c_str(), &number, LC_LAST, 0);
    }
    return assay;
}

// By index, so with the positions of both lists at the end.
Pairs PairsOf(_ASSAY* assay) {
    Pairs pairs;
    char16_t text[16];
    int32_t number;
    for (int32_t i = 1; FindElementOfAssay(assay, text, &number, LC_AT_INDEX, i) != 0; ++i) {
        pairs.emplace_back(text, number);
    }
    return pairs;
}

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

// Operations on (b 2) (d 4) (c 1) with both positions at the pair `at`.
struct Case {
    const char* name;
    int32_t at;
    LIST_CALLBACK code;
    int32_t column;
    const char16_t* text;
    int32_t number;
    uint32_t result;
    Pairs after;
};

const Pairs kStart = {{u"b", 2}, {u"d", 4}, {u"c", 1}};

template <typename Operation>
void RunCases(const std::vector<Case>& cases, Operation operation) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        _ASSAY* assay = TableOf(kStart);
        FindElementOfAssay(assay, nullptr, nullptr, LC_REWIND, 0);
        FindElementOfAssay(assay, nullptr, nullptr, LC_AT_INDEX, c.at);
        EXPECT_EQ(operation(assay, c), c.result);
        EXPECT_TRUE(Check(assay));
        EXPECT_EQ(PairsOf(assay), c.after);
        DestroyAssay(assay);
    }
}

TEST(PairedList, Insertion) {
    const Pairs kFront = {{u"x", 9}, {u"b", 2}, {u"d", 4}, {u"c", 1}};
    const Pairs kSecond = {{u"b", 2}, {u"x", 9}, {u"d", 4}, {u"c", 1}};
    const Pairs kThird = {{u"b", 2}, {u"d", 4}, {u"x", 9}, {u"c", 1}};
    const Pairs kBack = {{u"b", 2}, {u"d", 4}, {u"c", 1}, {u"x", 9}};
    const std::vector<Case> kCases = {
        {"rewind", 1, LC_REWIND, 1, u"x", 9, 0, kStart},
        {"at index", 1, LC_AT_INDEX, 2, u"x", 9, 2, kSecond},
        {"behind the last index", 1, LC_AT_INDEX, 7, u"x", 9, 4, kBack},
        {"previous", 2, LC_PREV, 0, u"x", 9, 2, kSecond},
        {"next", 1, LC_NEXT, 0, u"x", 9, 3, kThird},
        {"first", 2, LC_FIRST, 0, u"x", 9, 1, kFront},
        {"last", 2, LC_LAST, 0, u"x", 9, 4, kBack},
        {"by text", 1, LC_NOT_LESS, 1, u"bb", 0, 2, {{u"b", 2}, {u"bb", 0}, {u"d", 4}, {u"c", 1}}},
        {"by number", 1, LC_NOT_LESS, 2, u"x", 3, 2, {{u"b", 2}, {u"x", 3}, {u"d", 4}, {u"c", 1}}},
        {"column 3", 1, LC_NOT_LESS, 3, u"x", 3, 0, kStart},
        {"new text", 2, LC_EQUAL, 1, u"x", 9, 4, kBack},
        {"known text, though current", 2, LC_EQUAL, 1, u"d", 9, 2, kStart},
        {"known number", 1, LC_EQUAL, 2, u"x", 1, 3, kStart},
        {"column 0", 1, LC_EQUAL, 0, u"x", 9, 0, kStart},
        {"function", 3, IsSecond, 1, u"x", 9, 2, kSecond},
        {"function, column 2", 3, IsSecond, 2, u"x", 9, 2, kSecond},
        {"function, column 3", 3, IsSecond, 3, u"x", 9, 0, kStart},
    };
    RunCases(kCases, [](_ASSAY* assay, const Case& c) {
        return InsertElementOfAssay(assay, c.text, &c.number, c.code, c.column);
    });
}

TEST(PairedList, Overwriting) {
    const auto with = [](int index, const Pair& pair) {
        Pairs pairs = kStart;
        pairs[static_cast<std::size_t>(index - 1)] = pair;
        return pairs;
    };
    const std::vector<Case> kCases = {
        {"rewind", 1, LC_REWIND, 1, u"x", 9, 0, kStart},
        {"at index", 1, LC_AT_INDEX, 2, u"x", 9, 2, with(2, {u"x", 9})},
        {"next", 2, LC_NEXT, 0, u"x", 9, 3, with(3, {u"x", 9})},
        {"next of the last", 3, LC_NEXT, 0, u"x", 9, 0, kStart},
        {"not less is the first", 3, LC_NOT_LESS, 1, u"x", 9, 1, with(1, {u"x", 9})},
        {"column 3", 3, LC_NOT_LESS, 3, u"x", 9, 0, kStart},
        {"text as key", 3, LC_EQUAL, 1, u"d", 9, 2, with(2, {u"d", 9})},
        {"number as key", 3, LC_EQUAL, 2, u"x", 1, 3, with(3, {u"x", 1})},
        {"unknown key", 3, LC_EQUAL, 1, u"x", 9, 0, kStart},
        {"function", 3, IsSecond, 2, u"x", 9, 2, with(2, {u"x", 9})},
    };
    RunCases(kCases, [](_ASSAY* assay, const Case& c) {
        return WriteElementOfAssay(assay, c.text, &c.number, c.code, c.column);
    });
}

// What finding and removing hand out: by place both elements, by key the partner only.
struct Output {
    const char* name;
    int32_t at;
    LIST_CALLBACK code;
    int32_t column;
    Pair key;
    uint32_t result;
    Pair out;
};

const Output kOutputs[] = {
    {"rewind", 2, LC_REWIND, 1, {u"k", 0}, 0, {u"k", 0}},
    {"at index", 1, LC_AT_INDEX, 2, {u"k", 0}, 2, {u"d", 4}},
    {"first", 3, LC_FIRST, 0, {u"k", 0}, 1, {u"b", 2}},
    {"last", 1, LC_LAST, 0, {u"k", 0}, 3, {u"c", 1}},
    {"at no index", 1, LC_AT_INDEX, 4, {u"k", 0}, 0, {u"k", 0}},
    {"not less by text", 3, LC_NOT_LESS, 1, {u"c", 0}, 2, {u"c", 4}},
    {"not less by number", 3, LC_NOT_LESS, 2, {u"k", 3}, 2, {u"d", 3}},
    {"equal by text", 2, LC_EQUAL, 1, {u"d", 0}, 2, {u"d", 4}},
    {"equal by number", 3, LC_EQUAL, 2, {u"k", 1}, 3, {u"c", 1}},
    {"unknown text", 1, LC_EQUAL, 1, {u"k", 0}, 0, {u"k", 0}},
    {"column 3", 1, LC_EQUAL, 3, {u"d", 0}, 0, {u"d", 0}},
    {"function", 3, IsSecond, 1, {u"k", 0}, 2, {u"k", 4}},
};

template <typename Operation>
void RunOutputs(Operation operation, bool removes) {
    for (const Output& c : kOutputs) {
        SCOPED_TRACE(c.name);
        _ASSAY* assay = TableOf(kStart);
        FindElementOfAssay(assay, nullptr, nullptr, LC_AT_INDEX, c.at);
        char16_t text[16] = {};
        c.key.first.copy(text, 15);
        int32_t number = c.key.second;
        EXPECT_EQ(operation(assay, text, &number, c.code, c.column), c.result);
        EXPECT_EQ(Pair(text, number), c.out);
        EXPECT_TRUE(Check(assay));
        Pairs after = kStart;
        if (removes && c.result != 0) {
            after.erase(after.begin() + static_cast<int32_t>(c.result) - 1);
        }
        EXPECT_EQ(PairsOf(assay), after);
        DestroyAssay(assay);
    }
}

TEST(PairedList, Finding) {
    RunOutputs(FindElementOfAssay, false);
}

TEST(PairedList, Removal) {
    RunOutputs(RemoveElementOfAssay, true);
}

TEST(PairedList, SizesWalkThePairs) {
    _ASSAY* assay = TableOf({{u"a", 1}, {u"four", 2}, {u"", 3}});
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
    DestroyAssay(assay);
}

TEST(PairedList, Sorting) {
    const Pairs kPairs = {{u"b", 3}, {u"a", 2}, {u"b", 1}, {u"c", 2}};
    const struct {
        const char* name;
        LIST_CALLBACK code;
        int32_t param;
        uint32_t result;
        Pairs after;
    } kCases[] = {
        {"reversed", LC_FIRST, 0, 4, {{u"c", 2}, {u"b", 1}, {u"a", 2}, {u"b", 3}}},
        {"by text", LC_NOT_LESS, 1, 4, {{u"a", 2}, {u"b", 1}, {u"b", 3}, {u"c", 2}}},
        {"by number", LC_NOT_LESS, 2, 4, {{u"b", 1}, {u"c", 2}, {u"a", 2}, {u"b", 3}}},
        {"unique texts", LC_EQUAL, 1, 3, {{u"b", 3}, {u"a", 2}, {u"c", 2}}},
        {"unique numbers", LC_EQUAL, 2, 3, {{u"b", 3}, {u"a", 2}, {u"b", 1}}},
        {"column 3", LC_NOT_LESS, 3, 0, kPairs},
        {"at index", LC_AT_INDEX, 1, 0, kPairs},
        {"last", LC_LAST, 1, 0, kPairs},
        {"rewind", LC_REWIND, 1, 0, kPairs},
        {"by function",
         [](FLIST*, uint32_t, void*, void*, int32_t) { return 1; },
         1,
         4,
         {{u"c", 2}, {u"b", 1}, {u"a", 2}, {u"b", 3}}},
        {"a function that drops all but two",
         [](FLIST* list, uint32_t position, void*, void*, int32_t) {
             return position == 0 && CardinalityOfList(list) < 2 ? 1 : 0;
         },
         2,
         2,
         {{u"b", 3}, {u"a", 2}}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        _ASSAY* assay = TableOf(kPairs);
        EXPECT_EQ(SortElementOfAssay(assay, c.code, c.param), c.result);
        EXPECT_TRUE(Check(assay));
        EXPECT_EQ(PairsOf(assay), c.after);
        DestroyAssay(assay);
    }
}

TEST(PairedList, InvalidTables) {
    _ASSAY* const halfBuilt = CreateAssay(4, LET_STRING, 4, LET_CHAR, 4, nullptr);
    _ASSAY other;
    other.magic = 0;
    for (_ASSAY* assay : {static_cast<_ASSAY*>(nullptr), &other, halfBuilt}) {
        const bool isTable = assay == halfBuilt;
        int32_t number = 1;
        EXPECT_EQ(InsertElementOfAssay(assay, u"a", &number, LC_LAST, 0), 0u);
        EXPECT_EQ(FindElementOfAssay(assay, nullptr, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(FindElementOfAssay(assay, nullptr, nullptr, LC_REWIND, 0), 0u);
        EXPECT_EQ(WriteElementOfAssay(assay, u"a", &number, LC_FIRST, 0), 0u);
        EXPECT_EQ(RemoveElementOfAssay(assay, nullptr, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(SizeOfElementOfAssay(assay, nullptr, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(SortElementOfAssay(assay, LC_FIRST, 0), 0u);
        EXPECT_EQ(CardinalityOfAssay(assay), 0u);
        EXPECT_EQ(SetUserDataOfAssay(assay, &number), isTable ? 4u : 0u);
        EXPECT_EQ(GetUserDataOfAssay(assay, &number), isTable ? 4u : 0u);
        EXPECT_EQ(GetListOfAssay(assay, 3), nullptr);
        EXPECT_EQ(DestroyAssay(assay), isTable ? 1 : 0);
    }
}

TEST(PairedList, UserDataOfAnySize) {
    for (const uint32_t size : {0u, 4u, 8u, 100u}) {
        _ASSAY* assay = CreateAssay(size, LET_STRING, 0, LET_STRING, 0, nullptr);
        const std::string in(size, 'u');
        std::string out(size, '?');
        EXPECT_EQ(SetUserDataOfAssay(assay, in.data()), size);
        EXPECT_EQ(GetUserDataOfAssay(assay, out.data()), size);
        EXPECT_EQ(out, in);
        EXPECT_EQ(SetUserDataOfAssay(assay, nullptr), 0u);
        EXPECT_EQ(GetUserDataOfAssay(assay, nullptr), 0u);
        DestroyAssay(assay);
    }
}

// Whatever is done, and however the two positions drift apart, pair i stays pair i: each pair's
// number is the code of its text.
TEST(PairedList, RandomOperationsKeepThePairsAligned) {
    const LIST_CALLBACK kCodes[] = {LC_REWIND, LC_AT_INDEX, LC_PREV,  LC_NEXT, LC_FIRST,
                                    LC_LAST,   LC_NOT_LESS, LC_EQUAL, IsSecond};
    std::mt19937 random(11);
    _ASSAY* assay = TableOf({});
    for (int step = 0; step < 2000; ++step) {
        const LIST_CALLBACK code = kCodes[random() % std::size(kCodes)];
        const auto column = static_cast<int32_t>(random() % 4);
        auto number = static_cast<int32_t>(u'a' + random() % 12);
        char16_t text[2] = {static_cast<char16_t>(number), 0};
        const uint32_t before = CardinalityOfAssay(assay);
        int32_t change = 0;
        switch (random() % 6) {
            case 0:
            case 1:
                change = InsertElementOfAssay(assay, text, &number, code, column) != 0;
                break;
            case 2:
                change = -(RemoveElementOfAssay(assay, text, &number, code, column) != 0);
                break;
            case 3:
                FindElementOfAssay(assay, text, &number, code, column);
                break;
            case 4:
                WriteElementOfAssay(assay, text, &number, code, column);
                break;
            default:
                change = SortElementOfAssay(assay, LC_FIRST, 0) == before ? 0 : 99;
        }
        SCOPED_TRACE(testing::Message() << "step " << step);
        const int32_t grown = static_cast<int32_t>(CardinalityOfAssay(assay) - before);
        const bool foundOnly = change == 1 && code == LC_EQUAL && grown == 0;
        EXPECT_TRUE(grown == change || foundOnly);
        ASSERT_TRUE(Check(assay));
        if (step % 7 == 0) {
            for (const auto& [name, letter] : PairsOf(assay)) {
                ASSERT_EQ(static_cast<int32_t>(name[0]), letter);
            }
        }
    }
    DestroyAssay(assay);
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

// The pairs, or the failure behind which they are as before.
std::string PairsOrShort(_ASSAY* assay, const std::function<uint32_t()>& change) {
    const auto pairs = [assay] {
        EXPECT_TRUE(Check(assay));
        std::string text;
        char16_t first[8];
        char16_t second[8];
        for (LIST_CALLBACK code = LC_FIRST; FindElementOfAssay(assay, first, second, code, 0);
             code = LC_NEXT) {
            text += lq::host::EncodeUtf8(first) + "=" + lq::host::EncodeUtf8(second) + " ";
        }
        return text;
    };
    const std::string before = pairs();
    if (change() != 0) {
        return pairs();
    }
    EXPECT_EQ(pairs(), before);
    return kShort;
}

TEST(PairedList, WithoutMemoryThePairsStay) {
    const auto start = [](std::function<uint32_t(_ASSAY*)> change) {
        return [change]() -> Attempt {
            const std::shared_ptr<_ASSAY> assay(
                CreateAssay(16, LET_STRING, 0, LET_STRING, 0, nullptr), DestroyAssay);
            for (int i = 0; i < 20; ++i) {  // as many as the nodes that a list takes at once
                InsertElementOfAssay(assay.get(), u"key", u"value", LC_LAST, 0);
            }
            InsertElementOfAssay(assay.get(), u"last", u"1", LC_LAST, 0);
            return [=] { return PairsOrShort(assay.get(), [&] { return change(assay.get()); }); };
        };
    };
    // Behind the end of the nodes at hand, too: without memory for a text its element holds none,
    // so that only what finds no node fails.
    RunWithFailures(
        {"sort", start([](_ASSAY* assay) { return SortElementOfAssay(assay, LC_FIRST, 0); })});
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
