#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "containers/list_access.h"
#include "lq_data/containers.h"
#include "tests/support/test_allocator.h"

namespace {

using lq::containers::ListAccess;
using Numbers = std::vector<int32_t>;

// A list for the time of a test, with what tests ask for again and again.
class TestList {
  public:
    explicit TestList(LIST_ELEMENT_TYPE type, uint32_t size = 0)
        : list_(CreateList(0, type, size, nullptr)) {}
    ~TestList() { DestroyList(list_); }
    TestList(const TestList&) = delete;
    TestList& operator=(const TestList&) = delete;

    operator FLIST*() const { return list_; }
    FLIST* operator->() const { return list_; }
    uint32_t Add(int32_t number, LIST_CALLBACK code, int32_t param = 0) const {
        return InsertElementOfList(list_, &number, code, param);
    }
    uint32_t Go(LIST_CALLBACK code, int32_t param = 0) const {
        void* slot;
        return ListGet(list_, slot, nullptr, code, param);
    }
    // By the nodes, so that the position stays.
    Numbers All() const {
        Numbers numbers;
        ForeachElementOfList(list_, LC_NEXT, Collect, Remember(numbers));
        return numbers;
    }

  private:
    static int32_t Remember(Numbers& numbers) {
        collected_ = &numbers;
        return 0;
    }
    static int Collect(FLIST*, uint32_t, void* element, void*, int32_t) {
        if (element) {
            collected_->push_back(*static_cast<int32_t*>(element));
        }
        return 1;
    }

    static inline Numbers* collected_ = nullptr;
    FLIST* list_;
};

std::u16string TextAt(FLIST* list, int32_t index) {
    void* slot;
    if (ListGet(list, slot, nullptr, LC_AT_INDEX, index) == 0) {
        return u"(none)";
    }
    const auto* text = *static_cast<const char16_t**>(slot);
    return text ? text : u"(null)";
}

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

TEST(List, CreationBySizeAndType) {
    const struct {
        uint32_t type;
        uint32_t size;
        bool made;
        uint32_t slot;
    } kCases[] = {
        {0, 0, true, 0},  {0, 7, true, 7},   {1, 0, true, 4},  {1, 4, true, 4},
        {3, 8, false, 0}, {2, 4, true, 8},   {2, 8, true, 8},  {2, 2, false, 0},
        {5, 8, true, 8},  {6, 4, true, 4},   {6, 8, false, 0}, {11, 0, true, 4},
        {12, 1, true, 1}, {12, 4, false, 0}, {13, 4, true, 8}, {13, 16, false, 0},
        {14, 0, true, 0}, {14, 4, false, 0}, {99, 0, true, 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << "type " << c.type << " size " << c.size);
        const TestList list(static_cast<LIST_ELEMENT_TYPE>(c.type), c.size);
        ASSERT_NE(static_cast<FLIST*>(list), nullptr);
        ASSERT_EQ(list->GetList() != nullptr, c.made);
        EXPECT_EQ(InsertElementOfList(list, nullptr, LC_LAST, 0), c.made ? 1u : 0u);
        EXPECT_EQ(CardinalityOfList(list), c.made ? 1u : 0u);
        uint32_t size = 77;
        EXPECT_EQ(SizeOfElementOfList(list, &size, nullptr, LC_FIRST, 0), c.made ? 1u : 0u);
        const bool isText = c.type == 2 || c.type == 13;
        EXPECT_EQ(size, c.slot == 0 ? 77 : isText ? 0 : c.slot);
        EXPECT_TRUE(ListAccess::Check(*list));
    }
}

// Elements of every size appended and walked over, by the handle and by the member functions.
TEST(List, IsAppendedToAndWalkedOver) {
    for (const uint32_t size : {0u, 1u, 2u, 4u, 5u, 8u, 24u}) {
        SCOPED_TRACE(testing::Message() << "elements of " << size << " bytes");
        const TestList list(LET_MEMORY, size);
        const auto element = [size](uint32_t i) {
            return std::vector<unsigned char>(size, static_cast<unsigned char>(7 * i));
        };
        for (uint32_t i = 1; i <= 50; ++i) {
            const uint32_t index =
                i % 2 == 0 ? InsertElementOfList(list, element(i).data(), LC_LAST, 0)
                           : list->InsertElement(element(i).data(), nullptr, LC_LAST, 0);
            EXPECT_EQ(index, i);
            EXPECT_EQ(ListAccess::CurrentIndex(*list), i);
        }
        EXPECT_TRUE(ListAccess::Check(*list));
        list->FindElement(nullptr, nullptr, LC_REWIND, 0);
        std::vector<unsigned char> bytes(size, 0xEE);
        for (uint32_t i = 1; i <= 50; ++i) {
            const uint32_t index = i % 2 == 0
                                       ? FindElementOfList(list, bytes.data(), nullptr, LC_NEXT, 0)
                                       : list->FindElement(bytes.data(), nullptr, LC_NEXT, 0);
            EXPECT_EQ(index, i);
            EXPECT_EQ(bytes, element(i));
        }
        EXPECT_EQ(FindElementOfList(list, bytes.data(), nullptr, LC_NEXT, 0), 0u);
        EXPECT_EQ(bytes, element(50));
        EXPECT_EQ(ListAccess::CurrentIndex(*list), 50u);
        EXPECT_EQ(list.Go(LC_FIRST), 1u);
        EXPECT_EQ(FindElementOfList(list, nullptr, nullptr, LC_NEXT, 0), 2u);
        EXPECT_EQ(InsertElementOfList(list, nullptr, LC_LAST, 0), 51u);
        FindElementOfList(list, bytes.data(), nullptr, LC_LAST, 0);
        EXPECT_EQ(bytes, element(0)) << "a null value writes nothing";
    }
}

TEST(List, InvalidHandlesGiveZero) {
    FLIST noBody;
    const auto fill = [](std::uintptr_t p) { return reinterpret_cast<FLIST*>(p); };
    FLIST* const kHandles[] = {nullptr,
                               fill(0xCDCDCDCD),
                               fill(0xDDDDDDDD),
                               fill(0xCDCDCDCDCDCDCDCD),
                               fill(0xDDDDDDDDDDDDDDDD),
                               &noBody};
    for (FLIST* list : kHandles) {
        SCOPED_TRACE(list);
        int32_t value = 1;
        void* slot = &value;
        const auto yes = [](FLIST*, uint32_t, void*, void*, int32_t) { return 1; };
        EXPECT_EQ(InsertElementOfList(list, &value, LC_LAST, 0), 0u);
        EXPECT_EQ(FindElementOfList(list, &value, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(ListGet(list, slot, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(slot, nullptr);
        EXPECT_EQ(WriteElementOfList(list, &value, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(RemoveElementOfList(list, &value, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(SizeOfElementOfList(list, nullptr, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(ForeachElementOfList(list, LC_NEXT, yes, 0), 0u);
        EXPECT_EQ(SortElementOfList(list, LC_EQUAL, 0), 0u);
        EXPECT_EQ(AddListElement(list, &value), nullptr);
        EXPECT_EQ(SetUserDataOfList(list, &value), 0);
        EXPECT_EQ(GetUserDataOfList(list, &value), 0);
        EXPECT_EQ(CardinalityOfList(list), 0u);
        EXPECT_EQ(ClearList(list), 1);
        RemoveElementAt(list, &value);
    }
    EXPECT_EQ(DestroyList(nullptr), 0);
    EXPECT_EQ(noBody.Clear(), 0);
    EXPECT_EQ(noBody.Destroy(), 0);

    // The members without a body: nothing was ever made, or the pool has forgotten its nodes.
    const TestList emptied(LET_SIGNED_8);
    emptied->GetList()->RemoveAll();
    for (FLIST* list : {&noBody, static_cast<FLIST*>(emptied)}) {
        int32_t value = 1;
        EXPECT_EQ(list->Cardinality(), 0u);
        EXPECT_EQ(list->SetUserData(&value), 0);
        EXPECT_EQ(list->GetUserData(&value), 0);
        EXPECT_EQ(list->InsertElement(&value, &value, LC_LAST, 0), 0u);
        EXPECT_EQ(list->FindElement(&value, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(list->WriteElement(&value, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(list->RemoveElement(&value, nullptr, LC_FIRST, 0), 0u);
        EXPECT_EQ(list->Foreach(LC_NEXT, Record, 0), 0u);
        EXPECT_EQ(list->Sort(LC_FIRST, 0), 0u);
        EXPECT_EQ(AddListElementAt(list, &value, &value), nullptr);
        EXPECT_TRUE(ListAccess::Check(*list));
    }
}

TEST(List, ElementsWithoutSize) {
    const TestList list(static_cast<LIST_ELEMENT_TYPE>(14));
    InsertElementOfList(list, "x", LC_LAST, 0);
    char out = '?';
    EXPECT_EQ(WriteElementOfList(list, "x", nullptr, LC_FIRST, 0), 1u);
    EXPECT_EQ(WriteElementOfList(list, "x", nullptr, LC_AT_INDEX, 2), 0u);
    EXPECT_EQ(FindElementOfList(list, &out, nullptr, LC_FIRST, 0), 1u);
    EXPECT_EQ(RemoveElementOfList(list, &out, nullptr, LC_FIRST, 0), 1u);
    EXPECT_EQ(out, '?');
    EXPECT_EQ(CardinalityOfList(list), 0u);
}

TEST(List, CheckSeesDamage) {
    using Node = CGList::CNode;
    const struct {
        const char* name;
        void (*damage)(Node& node);
    } kCases[] = {
        {"no follower", [](Node& node) { node.next = nullptr; }},
        {"a follower that does not link back", [](Node& node) { node.next = node.prev; }},
        {"an element left out",
         [](Node& node) {
             node.next->next->prev = &node;
             node.next = node.next->next;
         }},
        {"an element too many",
         [](Node& node) {
             static Node extra;
             extra = {node.next, &node};
             node.next = node.next->prev = &extra;
         }},
    };
    for (const auto& c : kCases) {
        FLIST* list = CreateList(0, LET_SIGNED_8, 0, nullptr);
        for (const int32_t number : {1, 2, 3}) {
            InsertElementOfList(list, &number, LC_LAST, 0);
        }
        void* slot;
        ListGet(list, slot, nullptr, LC_FIRST, 0);
        EXPECT_TRUE(ListAccess::Check(*list));
        c.damage(*(static_cast<Node*>(slot) - 1));
        EXPECT_FALSE(ListAccess::Check(*list)) << c.name;
        list->FreeList();  // without a walk along the ring
        DestroyList(list);
    }
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

TEST(List, TextsAreOwnedCopies) {
    for (const LIST_ELEMENT_TYPE type : {LET_STRING, LET_STRING_NOCASE}) {
        const TestList list(type, 4);
        char16_t buffer[] = u"Motor";
        InsertElementOfList(list, buffer, LC_LAST, 0);
        InsertElementOfList(list, nullptr, LC_LAST, 0);
        InsertElementOfList(list, u"", LC_LAST, 0);
        buffer[0] = u'X';
        EXPECT_EQ(TextAt(list, 1), u"Motor");
        EXPECT_EQ(TextAt(list, 2), u"(null)");
        EXPECT_EQ(TextAt(list, 3), u"");

        const uint32_t kSizes[] = {6, 0, 1};
        for (int32_t i = 1; i <= 3; ++i) {
            uint32_t size = 99;
            char16_t out[8] = u"???????";
            SizeOfElementOfList(list, &size, nullptr, LC_AT_INDEX, i);
            EXPECT_EQ(size, kSizes[i - 1]);
            FindElementOfList(list, out, nullptr, LC_AT_INDEX, i);
            EXPECT_EQ(std::u16string(out), i == 1 ? u"Motor" : u"") << i;
        }

        // An element may be overwritten with its own text, and with none nothing is written.
        void* slot;
        ListGet(list, slot, nullptr, LC_FIRST, 0);
        EXPECT_EQ(WriteElementOfList(list, *static_cast<char16_t**>(slot), nullptr, LC_FIRST, 0),
                  1u);
        EXPECT_EQ(WriteElementOfList(list, nullptr, nullptr, LC_FIRST, 0), 1u);
        EXPECT_EQ(TextAt(list, 1), u"Motor");

        list.Go(LC_REWIND);
        RemoveElementOfList(list, nullptr, u"", LC_AT_INDEX, 2);
        list.Go(LC_REWIND);
        EXPECT_EQ(FindElementOfList(list, nullptr, u"mOTOR", LC_EQUAL, 0),
                  type == LET_STRING_NOCASE ? 1u : 0u);
        char16_t out[8];
        EXPECT_EQ(RemoveElementOfList(list, out, u"Motor", LC_EQUAL, 0), 1u);
        EXPECT_EQ(std::u16string(out), u"Motor");
    }
}

TEST(List, RemovalMovesThePosition) {
    const struct {
        LIST_CALLBACK code;
        int32_t param;
        int32_t removed;
        uint32_t result;
        uint32_t position;
    } kCases[] = {
        {LC_FIRST, 0, 10, 1, 1},    {LC_AT_INDEX, 2, 20, 2, 2}, {LC_LAST, 0, 30, 3, 0},
        {LC_NEXT, 0, 10, 1, 1},     {LC_PREV, 0, 30, 3, 0},     {LC_REWIND, 0, -1, 0, 0},
        {LC_AT_INDEX, 4, -1, 0, 0},
    };
    for (std::size_t i = 0; i < std::size(kCases); ++i) {
        const auto& c = kCases[i];
        const TestList list(LET_SIGNED_8);
        for (const int32_t number : {10, 20, 30}) {
            list.Add(number, LC_LAST);
        }
        list.Go(LC_AT_INDEX, 2);
        int32_t out = -1;
        EXPECT_EQ(RemoveElementOfList(list, &out, nullptr, c.code, c.param), c.result) << i;
        EXPECT_EQ(out, c.removed) << i;
        EXPECT_EQ(ListAccess::CurrentIndex(*list), c.position) << i;
        EXPECT_TRUE(ListAccess::Check(*list)) << i;
    }
}

TEST(List, ElementsByNode) {
    const TestList list(LET_SIGNED_8);
    const auto add = [&](int32_t number, void* after) {
        return AddListElementAt(list, &number, after);
    };
    void* a = add(1, nullptr);
    EXPECT_EQ(ListAccess::CurrentIndex(*list), 1u);
    void* c = add(3, a);
    EXPECT_EQ(ListAccess::CurrentIndex(*list), 0u);
    void* b = add(2, a);
    EXPECT_EQ(list.All(), (Numbers{1, 2, 3}));
    EXPECT_EQ(static_cast<CGList::CNode*>(a)->next, b);
    EXPECT_EQ(static_cast<CGList::CNode*>(b)->next, c);
    list.Go(LC_LAST);
    RemoveElementAt(list, b);
    RemoveElementAt(list, nullptr);
    EXPECT_EQ(list.All(), (Numbers{1, 3}));
    EXPECT_EQ(ListAccess::CurrentIndex(*list), 0u);
    RemoveElementAt(list, static_cast<CGList::CNode*>(a)->prev);  // the head is no element
    EXPECT_EQ(list.All(), (Numbers{1, 3}));
    EXPECT_TRUE(ListAccess::Check(*list));
}

TEST(List, UserDataOfAnySize) {
    for (const uint32_t size : {0u, 1u, 4u, 8u, 9u, 1000u}) {
        FLIST* list = CreateList(size, LET_SIGNED_8, 4, nullptr);
        const std::string in(size, 'u');
        std::string out(size, '?');
        EXPECT_EQ(GetUserDataOfList(list, out.data()), 1);
        EXPECT_EQ(out, std::string(size, '\0')) << size;
        EXPECT_EQ(SetUserDataOfList(list, in.data()), 1);
        EXPECT_EQ(GetUserDataOfList(list, out.data()), 1);
        EXPECT_EQ(out, in) << size;
        EXPECT_EQ(SetUserDataOfList(list, nullptr), size == 0 ? 1 : 0) << size;
        EXPECT_EQ(GetUserDataOfList(list, nullptr), size == 0 ? 1 : 0) << size;
        DestroyList(list);
    }
}

TEST(List, BodyComesAndGoes) {
    CObject* object = CRuntimeClass::CreateObject("FLIST");
    ASSERT_NE(object, nullptr);
    auto* list = static_cast<FLIST*>(object);
    EXPECT_EQ(list->GetList(), nullptr);
    list->Create(0, LET_STRING, 0, LC_LAST);
    EXPECT_STREQ(list->GetList()->GetRuntimeClass()->name, "CGList");
    EXPECT_EQ(ListAccess::DefaultCallback(*list), LC_LAST);
    InsertElementOfList(list, u"text", LC_LAST, 0);
    list->Create(0, LET_SIGNED_8, 0, nullptr);  // the old content goes
    EXPECT_EQ(list->Cardinality(), 0u);
    list->GetList()->RemoveAll();
    EXPECT_EQ(InsertElementOfList(list, u"text", LC_LAST, 0), 0u);
    list->FreeList();
    EXPECT_EQ(list->GetList(), nullptr);
    delete object;

    CObject* pool = CRuntimeClass::CreateObject("CGList");
    ASSERT_NE(pool, nullptr);
    EXPECT_EQ(static_cast<CGList*>(pool)->IsListCreated(), 0);
    delete pool;
}

// Random operations against a vector and an index.
TEST(List, RandomOperationsAgainstAModel) {
    std::mt19937 random(7);
    const TestList list(LET_SIGNED_8);
    Numbers model;
    uint32_t position = 0;
    const auto at = [&](uint32_t index) { return model.begin() + static_cast<int32_t>(index) - 1; };
    for (int step = 0; step < 5000; ++step) {
        const auto number = static_cast<int32_t>(random() % 20);
        const auto size = static_cast<uint32_t>(model.size());
        const auto index = static_cast<uint32_t>(random() % (size + 2));
        const bool exists = index >= 1 && index <= size;
        SCOPED_TRACE(testing::Message() << "step " << step);
        switch (random() % 7) {
            case 0:
                position = exists ? index : size + 1;
                EXPECT_EQ(list.Add(number, LC_AT_INDEX, static_cast<int32_t>(index)), position);
                model.insert(at(position), number);
                break;
            case 1: {
                const auto place = std::find_if(model.begin(), model.end(),
                                                [&](int32_t other) { return other >= number; });
                position = static_cast<uint32_t>(place - model.begin()) + 1;
                EXPECT_EQ(list.Add(number, LC_NOT_LESS), position);
                model.insert(place, number);
                break;
            }
            case 2: {
                uint32_t found = 0;
                for (uint32_t i = 1; i <= size && found == 0; ++i) {
                    const uint32_t candidate = (position + i - 1) % size + 1;
                    found = candidate != position && *at(candidate) == number ? candidate : 0;
                }
                EXPECT_EQ(FindElementOfList(list, nullptr, &number, LC_EQUAL, 0), found);
                position = found != 0 ? found : position;
                break;
            }
            case 3:
            case 4:
                EXPECT_EQ(RemoveElementOfList(list, nullptr, nullptr, LC_AT_INDEX,
                                              static_cast<int32_t>(index)),
                          exists ? index : 0);
                position = exists && index < size ? index : 0;
                if (exists) {
                    model.erase(at(index));
                }
                break;
            case 5:
                EXPECT_EQ(list.Go(LC_NEXT), position < size ? position + 1 : 0);
                position += position < size ? 1 : 0;
                break;
            default:
                if (exists) {
                    EXPECT_EQ(WriteElementOfList(list, &number, nullptr, LC_AT_INDEX,
                                                 static_cast<int32_t>(index)),
                              index);
                    *at(index) = number;
                    position = index;
                } else if (random() % 50 == 0) {
                    ClearList(list);
                    model.clear();
                    position = 0;
                }
        }
        ASSERT_TRUE(ListAccess::Check(*list));
        ASSERT_EQ(list.All(), model);
        ASSERT_EQ(ListAccess::CurrentIndex(*list), position);
    }
}

TEST(List, WithoutMemory) {
    lq::test::FailEachAllocation([](const auto& failing) {
        FLIST* list = CreateList(16, LET_STRING, 0, nullptr);
        if (!list || !list->GetList()) {
            EXPECT_TRUE(failing.HasFailed());
            EXPECT_EQ(InsertElementOfList(list, u"a", LC_LAST, 0), 0u);
            DestroyList(list);
            return;
        }
        for (uint32_t i = 1; i <= 25; ++i) {
            const uint32_t before = CardinalityOfList(list);
            const uint32_t index = InsertElementOfList(list, u"text", LC_LAST, 0);
            EXPECT_EQ(CardinalityOfList(list), index == 0 ? before : before + 1);
            EXPECT_TRUE(ListAccess::Check(*list));
        }
        const uint32_t written = WriteElementOfList(list, u"other", nullptr, LC_FIRST, 0);
        if (CardinalityOfList(list) > 0) {
            EXPECT_EQ(TextAt(list, 1), written == 1 ? u"other" : u"(null)");
        }
        EXPECT_EQ(DestroyList(list), 1);
    });
}

}  // namespace
