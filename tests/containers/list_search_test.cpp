// How lists are searched, where insertions go, and walks with functions.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/containers/list_util.h"

namespace lq::test {
namespace {

// What a callback was called with, and what it answers.
struct Calls {
    std::vector<std::pair<uint32_t, int32_t>> seen;  // position, element
    int32_t accepted = 0;                            // the element that gets `answer`
    int answer = 1;
    int atEnd = 0;
};
Calls calls;

int Record(FLIST*, uint32_t position, void* element, void*, int32_t) {
    const int32_t number = element ? *static_cast<int32_t*>(element) : -1;
    calls.seen.emplace_back(position, number);
    if (!element) {
        return calls.atEnd;
    }
    return number == calls.accepted ? calls.answer : 0;
}

TEST(List, ComparisonByType) {
    const struct {
        LIST_ELEMENT_TYPE type;
        int32_t element;
        int32_t key;
        bool notLess;
        bool equal;
    } kCases[] = {
        {LET_UNSIGNED_1, -1, 1, true, false}, {LET_UNSIGNED_3, 1, -1, false, false},
        {LET_UNSIGNED_9, 5, 5, true, true},   {LET_SIGNED_8, -1, 1, false, false},
        {LET_SIGNED_10, 1, -1, true, false},  {LET_SIGNED_11, INT32_MIN, INT32_MAX, false, false},
        {LET_UNORDERED, 1, 1, true, false},   {LET_CHAR, 0x7F, 0x80, true, false},  // -128
        {LET_CHAR, 0x180, 0x80, true, true},  // one byte counts
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.type << ": " << c.element << " " << c.key);
        const TestList list(c.type);
        list.Add(c.element, LC_LAST);
        list.Go(LC_REWIND);
        EXPECT_EQ(FindElementOfList(list, nullptr, &c.key, LC_NOT_LESS, 0), c.notLess);
        list.Go(LC_REWIND);
        EXPECT_EQ(FindElementOfList(list, nullptr, &c.key, LC_EQUAL, 0), c.equal);
    }
}

TEST(List, ComparisonLengthOfMemory) {
    const TestList list(LET_MEMORY, 4);
    InsertElementOfList(list, "abcd", LC_LAST, 0);
    const struct {
        const char* key;
        int32_t length;
        bool equal;
    } kCases[] = {{"abxy", 2, true}, {"abxy", 3, false}, {"abxy", 0, false},
                  {"abcd", 0, true}, {"abcd", 9, true},  {"abxy", -1, false}};
    for (const auto& c : kCases) {
        list.Go(LC_REWIND);
        EXPECT_EQ(FindElementOfList(list, nullptr, c.key, LC_EQUAL, c.length), c.equal)
            << c.key << " " << c.length;
    }
}

TEST(List, ListsCompareByTheirUserData) {
    FLIST* lists[3];
    const unsigned char kData[3][2] = {{1, 1}, {1, 2}, {1, 0}};
    for (int i = 0; i < 3; ++i) {
        lists[i] = CreateList(i == 2 ? 1 : 2, LET_MEMORY, 0, nullptr);
        EXPECT_EQ(SetUserDataOfList(lists[i], kData[i]), 1);
    }
    const struct {
        FLIST* element;
        FLIST* key;
        bool notLess;
        bool equal;
    } kCases[] = {
        {lists[0], lists[0], true, true},  {lists[0], lists[1], false, false},
        {lists[1], lists[0], true, false}, {lists[2], lists[0], true, true},
        {lists[0], lists[2], true, false}, {nullptr, lists[0], false, false},
        {lists[0], nullptr, true, false},
    };
    for (std::size_t i = 0; i < std::size(kCases); ++i) {
        const TestList holder(LET_LIST, 4);
        InsertElementOfList(holder, &kCases[i].element, LC_LAST, 0);
        holder.Go(LC_REWIND);
        EXPECT_EQ(FindElementOfList(holder, nullptr, &kCases[i].key, LC_NOT_LESS, 0),
                  kCases[i].notLess)
            << i;
        holder.Go(LC_REWIND);
        EXPECT_EQ(FindElementOfList(holder, nullptr, &kCases[i].key, LC_EQUAL, 0), kCases[i].equal)
            << i;
    }
    for (FLIST* list : lists) {
        DestroyList(list);
    }
}

// From a list 10 20 30 with the position at `at`.
TEST(List, PlaceOfInsertionByCode) {
    const struct {
        const char* name;
        uint32_t at;
        LIST_CALLBACK code;
        int32_t value;
        int32_t param;
        uint32_t result;
        Numbers after;
    } kCases[] = {
        {"rewind", 2, LC_REWIND, 9, 0, 0, {10, 20, 30}},
        {"at 1", 2, LC_AT_INDEX, 9, 1, 1, {9, 10, 20, 30}},
        {"at 3", 0, LC_AT_INDEX, 9, 3, 3, {10, 20, 9, 30}},
        {"at 0", 2, LC_AT_INDEX, 9, 0, 4, {10, 20, 30, 9}},
        {"at 4", 2, LC_AT_INDEX, 9, 4, 4, {10, 20, 30, 9}},
        {"at -1", 2, LC_AT_INDEX, 9, -1, 4, {10, 20, 30, 9}},
        {"prev", 2, LC_PREV, 9, 0, 2, {10, 9, 20, 30}},
        {"prev of nothing", 0, LC_PREV, 9, 0, 4, {10, 20, 30, 9}},
        {"next", 1, LC_NEXT, 9, 0, 3, {10, 20, 9, 30}},
        {"next of nothing", 0, LC_NEXT, 9, 0, 2, {10, 9, 20, 30}},
        {"next of the last", 3, LC_NEXT, 9, 0, 4, {10, 20, 30, 9}},
        {"first", 2, LC_FIRST, 9, 0, 1, {9, 10, 20, 30}},
        {"last", 2, LC_LAST, 9, 0, 4, {10, 20, 30, 9}},
        {"not less", 3, LC_NOT_LESS, 15, 0, 2, {10, 15, 20, 30}},
        {"not less, all less", 1, LC_NOT_LESS, 31, 0, 4, {10, 20, 30, 31}},
        {"equal found", 3, LC_EQUAL, 20, 0, 2, {10, 20, 30}},
        {"equal missing", 3, LC_EQUAL, 9, 0, 4, {10, 20, 30, 9}},
        {"equal to the current", 2, LC_EQUAL, 20, 0, 4, {10, 20, 30, 20}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        const TestList list(LET_SIGNED_8);
        for (const int32_t number : {10, 20, 30}) {
            list.Add(number, LC_LAST);
        }
        list.Go(LC_REWIND);
        list.Go(LC_AT_INDEX, static_cast<int32_t>(c.at));
        EXPECT_EQ(list.Add(c.value, c.code, c.param), c.result);
        EXPECT_EQ(list.All(), c.after);
        EXPECT_EQ(ListAccess::CurrentIndex(*list), c.result == 0 ? c.at : c.result);
        EXPECT_TRUE(ListAccess::Check(*list));
    }
}

TEST(List, EqualElementsEnterBeforeTheOldOnes) {
    const TestList list(LET_MEMORY, 2);
    for (const char* element : {"b1", "a1", "b2", "a2"}) {
        NewElementOfList(list, element, element, LC_NOT_LESS, 1);
    }
    std::string all;
    for (int32_t i = 1; i <= 4; ++i) {
        char element[2];
        FindElementOfList(list, element, nullptr, LC_AT_INDEX, i);
        all.append(element, 2);
    }
    EXPECT_EQ(all, "a2a1b2b1");
}

TEST(List, FunctionsSearchRoundTheRing) {
    const TestList list(LET_SIGNED_8);
    for (const int32_t number : {10, 20, 30}) {
        list.Add(number, LC_LAST);
    }
    const struct {
        int32_t from;
        int32_t accepted;
        int answer;
        uint32_t result;
        std::vector<std::pair<uint32_t, int32_t>> seen;
    } kCases[] = {
        {0, 20, 1, 2, {{1, 10}, {2, 20}}},          {2, 10, 1, 1, {{3, 30}, {1, 10}}},
        {2, 20, 1, 2, {{3, 30}, {1, 10}, {2, 20}}}, {2, 20, 2, 0, {{3, 30}, {1, 10}, {2, 20}}},
        {0, 99, 1, 0, {{1, 10}, {2, 20}, {3, 30}}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << "from " << c.from << " to " << c.accepted);
        list.Go(LC_REWIND);
        list.Go(LC_AT_INDEX, c.from);
        calls = {{}, c.accepted, c.answer, 0};
        EXPECT_EQ(list.Go(Record), c.result);
        EXPECT_EQ(calls.seen, c.seen);
        EXPECT_EQ(ListAccess::CurrentIndex(*list),
                  c.result != 0 ? c.result : static_cast<uint32_t>(c.from));
    }
}

TEST(List, FunctionsPlaceInsertions) {
    const struct {
        int32_t accepted;
        int atEnd;
        uint32_t result;
        Numbers after;
        std::size_t callCount;
    } kCases[] = {
        {20, 0, 2, {10, 9, 20}, 2},
        {99, 1, 3, {10, 20, 9}, 3},
        {99, 2, 0, {10, 20}, 3},
    };
    for (const auto& c : kCases) {
        const TestList list(LET_SIGNED_8);
        list.Add(10, LC_LAST);
        list.Add(20, LC_LAST);
        calls = {{}, c.accepted, 1, c.atEnd};
        EXPECT_EQ(list.Add(9, Record), c.result);
        EXPECT_EQ(list.All(), c.after) << c.accepted << " " << c.atEnd;
        EXPECT_EQ(calls.seen.size(), c.callCount);
    }
}

TEST(List, WalksInBothDirectionsAndStops) {
    const TestList list(LET_SIGNED_8);
    calls = {};
    EXPECT_EQ(ForeachElementOfList(list, LC_FIRST, Record, 0), 0u);
    EXPECT_EQ(calls.seen, (decltype(calls.seen){{0, -1}}));
    EXPECT_EQ(ForeachElementOfList(list, LC_NEXT, LC_LAST, 0), 0u);  // a code is no function

    for (const int32_t number : {10, 20, 30}) {
        list.Add(number, LC_LAST);
    }
    const auto goOn = [](FLIST* l, uint32_t position, void* element, void* key, int32_t param) {
        Record(l, position, element, key, param);
        return static_cast<int>(position) == param ? 0 : -1;
    };
    const struct {
        LIST_CALLBACK direction;
        int32_t stopAt;
        std::vector<std::pair<uint32_t, int32_t>> seen;
    } kCases[] = {
        {LC_NEXT, 0, {{1, 10}, {2, 20}, {3, 30}}},
        {LC_PREV, 0, {{1, 30}, {2, 20}, {3, 10}}},
        {LC_NEXT, 1, {{1, 10}}},
        {LC_PREV, 2, {{1, 30}, {2, 20}}},
        {LC_FIRST, 0, {}},
    };
    for (std::size_t i = 0; i < std::size(kCases); ++i) {
        calls = {};
        EXPECT_EQ(ForeachElementOfList(list, kCases[i].direction, goOn, kCases[i].stopAt),
                  kCases[i].seen.size())
            << i;
        EXPECT_EQ(calls.seen, kCases[i].seen) << i;
        EXPECT_EQ(ListAccess::CurrentIndex(*list), 3u) << i;
    }
}

TEST(List, AWalkMayRemoveWhatItIsAt) {
    const TestList list(LET_SIGNED_8);
    for (int32_t number = 1; number <= 6; ++number) {
        list.Add(number, LC_LAST);
    }
    const auto removeEven = [](FLIST* l, uint32_t, void* element, void*, int32_t) {
        if (*static_cast<int32_t*>(element) % 2 == 0) {
            RemoveElementAt(l, static_cast<CGList::CNode*>(element) - 1);
        }
        return 1;
    };
    EXPECT_EQ(ForeachElementOfList(list, LC_NEXT, removeEven, 0), 6u);
    EXPECT_EQ(list.All(), (Numbers{1, 3, 5}));
    EXPECT_TRUE(ListAccess::Check(*list));
}

}  // namespace
}  // namespace lq::test
