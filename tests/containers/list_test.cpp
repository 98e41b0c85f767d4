#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/containers/list_util.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/rows.h"

namespace lq::test {
namespace {

TEST(List, CreationBySizeAndType) {
    for (const Row& row : Rows("containers/lists.rows", "creation")) {
        SCOPED_TRACE(row.line);
        const struct {
            int64_t type, size;
            bool made;
            uint32_t slot;
        } c = {row.Number(0), row.Number(1), !row[2].empty(),
               row[2].empty() ? 0 : static_cast<uint32_t>(row.Number(2))};
        const TestList list(static_cast<LIST_ELEMENT_TYPE>(c.type), static_cast<uint32_t>(c.size));
        ASSERT_NE(static_cast<FLIST*>(list), nullptr);
        ASSERT_EQ(list->GetList() != nullptr, c.made);
        EXPECT_EQ(InsertElementOfList(list, nullptr, LC_LAST, 0), c.made ? 1u : 0u);
        EXPECT_EQ(CardinalityOfList(list), c.made ? 1u : 0u);
        uint32_t size = 77;
        EXPECT_EQ(SizeOfElementOfList(list, &size, nullptr, LC_FIRST, 0), c.made ? 1u : 0u);
        const bool isText = c.type == 2 || c.type == 13;
        EXPECT_EQ(size, c.slot == 0 ? 77 : isText ? 0 : c.slot);
        char16_t out[8] = u"??";
        EXPECT_EQ(WriteElementOfList(list, u"xxxxxxx", nullptr, LC_FIRST, 0), c.made ? 1u : 0u);
        EXPECT_EQ(WriteElementOfList(list, u"xxxxxxx", nullptr, LC_AT_INDEX, 2), 0u);
        EXPECT_EQ(RemoveElementOfList(list, out, nullptr, LC_FIRST, 0), c.made ? 1u : 0u);
        EXPECT_EQ(out[0] == u'?', c.slot == 0) << "an element of no size is not copied";
        EXPECT_TRUE(ListAccess::Check(*list));
    }
}

// Elements of every size appended and walked over, by the handle and by the member functions.
TEST(List, IsAppendedToAndWalkedOver) {
    for (const uint32_t size : {0u, 1u, 2u, 4u, 5u, 8u, 24u, 100u}) {
        SCOPED_TRACE(testing::Message() << "elements of " << size << " bytes");
        const TestList list(LET_MEMORY, size);
        const auto element = [size](uint32_t i) {
            return std::vector<unsigned char>(size, static_cast<unsigned char>(7 * i));
        };
        for (uint32_t i = 1; i <= 50; ++i) {
            const auto in = element(i);
            EXPECT_EQ(i % 2 == 0 ? InsertElementOfList(list, in.data(), LC_LAST, 0)
                                 : list->InsertElement(in.data(), nullptr, LC_LAST, 0),
                      i);
            EXPECT_EQ(ListAccess::CurrentIndex(*list), i);
        }
        EXPECT_TRUE(ListAccess::Check(*list));
        list.Go(LC_REWIND);
        std::vector<unsigned char> out(size, 0xEE);
        for (uint32_t i = 1; i <= 50; ++i) {
            EXPECT_EQ(i % 2 == 0 ? FindElementOfList(list, out.data(), nullptr, LC_NEXT, 0)
                                 : list->FindElement(out.data(), nullptr, LC_NEXT, 0),
                      i);
            EXPECT_EQ(out, element(i));
        }
        EXPECT_EQ(FindElementOfList(list, out.data(), nullptr, LC_NEXT, 0), 0u);
        EXPECT_EQ(out, element(50));
        list.Go(LC_FIRST);
        EXPECT_EQ(FindElementOfList(list, nullptr, nullptr, LC_NEXT, 0), 2u);
        EXPECT_EQ(InsertElementOfList(list, nullptr, LC_LAST, 0), 51u);
        EXPECT_EQ(RemoveElementOfList(list, out.data(), nullptr, LC_LAST, 0), 51u);
        EXPECT_EQ(out, element(0)) << "a null value writes nothing";
    }
}

// Without a body: nothing was ever made, or the pool has forgotten its nodes.
TEST(List, InvalidHandlesGiveZero) {
    FLIST noBody;
    const TestList emptied(LET_SIGNED_8);
    emptied->GetList()->RemoveAll();
    const auto fill = [](std::uintptr_t p) { return reinterpret_cast<FLIST*>(p); };
    const auto yes = [](FLIST*, uint32_t, void*, void*, int32_t) { return 1; };
    int32_t value = 1;
    for (FLIST* list : {fill(0), fill(0xCDCDCDCD), fill(0xDDDDDDDD), fill(0xCDCDCDCDCDCDCDCD),
                        fill(0xDDDDDDDDDDDDDDDD), &noBody, static_cast<FLIST*>(emptied)}) {
        SCOPED_TRACE(list);
        void* slot = &value;
        const uint32_t kResults[] = {
            InsertElementOfList(list, &value, LC_LAST, 0),
            FindElementOfList(list, &value, nullptr, LC_FIRST, 0),
            ListGet(list, slot, nullptr, LC_NEXT, 0),
            WriteElementOfList(list, &value, nullptr, LC_FIRST, 0),
            RemoveElementOfList(list, &value, nullptr, LC_FIRST, 0),
            SizeOfElementOfList(list, nullptr, nullptr, LC_FIRST, 0),
            ForeachElementOfList(list, LC_NEXT, yes, 0),
            SortElementOfList(list, LC_EQUAL, 0),
            CardinalityOfList(list),
        };
        EXPECT_THAT(kResults, testing::Each(0u));
        EXPECT_TRUE(!slot && !AddListElement(list, &value));
        EXPECT_TRUE(!AddListElementAt(list, &value, &value));
        EXPECT_EQ(SetUserDataOfList(list, &value) + GetUserDataOfList(list, &value), 0);
        EXPECT_EQ(ClearList(list), 1);
        RemoveElementAt(list, &value);
    }
    EXPECT_EQ(DestroyList(nullptr), 0);
    for (FLIST* list : {&noBody, static_cast<FLIST*>(emptied)}) {
        const uint32_t kResults[] = {
            list->InsertElement(&value, &value, LC_LAST, 0),
            list->FindElement(&value, nullptr, LC_FIRST, 0),
            list->WriteElement(&value, nullptr, LC_FIRST, 0),
            list->RemoveElement(&value, nullptr, LC_FIRST, 0),
            list->Foreach(LC_NEXT, yes, 0),
            list->Sort(LC_FIRST, 0),
            list->Cardinality(),
        };
        EXPECT_THAT(kResults, testing::Each(0u));
        EXPECT_EQ(list->SetUserData(&value) + list->GetUserData(&value) + list->Clear(), 0);
        EXPECT_TRUE(ListAccess::Check(*list));
    }
    EXPECT_EQ(noBody.Destroy(), 0);
}

TEST(List, TextsAreOwnedCopies) {
    for (const LIST_ELEMENT_TYPE type : {LET_STRING, LET_STRING_NOCASE}) {
        const TestList list(type, 4);
        char16_t buffer[] = u"Motor";
        InsertElementOfList(list, buffer, LC_LAST, 0);
        InsertElementOfList(list, nullptr, LC_LAST, 0);
        InsertElementOfList(list, u"", LC_LAST, 0);
        buffer[0] = u'X';
        const struct {
            uint32_t size;
            const char16_t* text;
            const char16_t* out;
        } kCases[] = {{6, u"Motor", u"Motor"}, {0, u"(null)", u""}, {1, u"", u""}};
        for (int32_t i = 1; i <= 3; ++i) {
            const auto& c = kCases[i - 1];
            uint32_t size = 99;
            char16_t out[8] = u"???????";
            EXPECT_EQ(TextAt(list, i), c.text);
            SizeOfElementOfList(list, &size, nullptr, LC_AT_INDEX, i);
            EXPECT_EQ(size, c.size);
            FindElementOfList(list, out, nullptr, LC_AT_INDEX, i);
            EXPECT_EQ(std::u16string(out), c.out);
        }

        // An element may be overwritten with its own text, and with none nothing is written.
        void* slot;
        ListGet(list, slot, nullptr, LC_FIRST, 0);
        EXPECT_EQ(WriteElementOfList(list, *static_cast<char16_t**>(slot), nullptr, LC_FIRST, 0),
                  1u);
        EXPECT_EQ(WriteElementOfList(list, nullptr, nullptr, LC_FIRST, 0), 1u);
        EXPECT_EQ(TextAt(list, 1), u"Motor");
        EXPECT_EQ(FindElementOfList(list, nullptr, u"zz", LC_NOT_LESS, 0), 2u) << "no text";

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

TEST(List, ElementsByNode) {
    const TestList list(LET_SIGNED_8);
    const auto add = [&](int32_t number, void* after) {
        return AddListElementAt(list, &number, after);
    };
    void* a = add(1, nullptr);
    EXPECT_EQ(ListAccess::CurrentIndex(*list), 1u);
    void* c = add(3, a);
    EXPECT_EQ(ListAccess::CurrentIndex(*list), 0u);
    EXPECT_TRUE(ListAccess::Check(*list));
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

// What a callback was called with, and what it answers.
struct Calls {
    std::vector<std::pair<uint32_t, int32_t>> seen;  // position, element
    int32_t accepted = 0;                            // the element that gets `answer`
    int answer = 1;
    int atEnd = 0;
    int32_t param = 0;  // of the last one
};
Calls calls;

int Record(FLIST*, uint32_t position, void* element, void*, int32_t param) {
    calls.param = param;
    const int32_t number = element ? *static_cast<int32_t*>(element) : -1;
    calls.seen.emplace_back(position, number);
    if (!element) {
        return calls.atEnd;
    }
    return number == calls.accepted ? calls.answer : 0;
}

// A list with one element, and how that compares with a key.
void ExpectComparison(LIST_ELEMENT_TYPE type, const void* element, const void* key, bool notLess,
                      bool equal, int32_t length = 0) {
    const TestList list(type, type == LET_CHAR ? 1 : 4);
    InsertElementOfList(list, element, LC_LAST, 0);
    list.Go(LC_REWIND);
    EXPECT_EQ(FindElementOfList(list, nullptr, key, LC_NOT_LESS, length), notLess);
    list.Go(LC_REWIND);
    EXPECT_EQ(FindElementOfList(list, nullptr, key, LC_EQUAL, length), equal);
    char16_t own[8] = {};  // what is handed out is the key where there is none
    std::memcpy(own, key, 4);
    if (type == LET_MEMORY || type == LET_SIGNED_8) {
        list.Go(LC_REWIND);
        EXPECT_EQ(FindElementOfList(list, own, nullptr, LC_NOT_LESS, length), notLess);
    }
}

TEST(List, ComparisonByType) {
    for (const Row& row : Rows("containers/lists.rows", "comparison")) {
        SCOPED_TRACE(row.line);
        const auto element = static_cast<int32_t>(row.Number(1));
        const auto key = static_cast<int32_t>(row.Number(2));
        ExpectComparison(static_cast<LIST_ELEMENT_TYPE>(row.Number(0)), &element, &key,
                         row[3].starts_with("not less"), row[3].ends_with("equal"));
    }
    // Of memory as many bytes as are asked for, or all.
    for (const Row& row : Rows("containers/lists.rows", "memory")) {
        SCOPED_TRACE(row.line);
        const bool isEqual = row[2] == "equal";
        ExpectComparison(LET_MEMORY, "abcd", row[0].c_str(), isEqual, isEqual,
                         static_cast<int32_t>(row.Number(1)));
    }
}

TEST(List, ListsCompareByTheirUserData) {
    FLIST* lists[3];
    const unsigned char kData[3][2] = {{1, 1}, {1, 2}, {1, 0}};
    for (int i = 0; i < 3; ++i) {
        lists[i] = CreateList(i == 2 ? 1 : 2, LET_MEMORY, 0, nullptr);
        EXPECT_EQ(SetUserDataOfList(lists[i], kData[i]), 1);
    }
    FLIST* const longer = CreateList(2, LET_MEMORY, 0, nullptr);
    EXPECT_EQ(SetUserDataOfList(longer, kData[2]), 1);  // by a zero
    // clang-format off
    const struct { FLIST* element; FLIST* key; bool notLess; bool equal; } kCases[] = {
        {lists[0], lists[0], true, true}, {lists[0], lists[1], false, false},
        {lists[1], lists[0], true, false}, {lists[2], lists[0], true, true},
        {lists[0], lists[2], true, false}, {nullptr, lists[0], false, false},
        {lists[0], nullptr, true, false}, {longer, lists[2], true, true},
    };
    // clang-format on
    for (const auto& c : kCases) {
        SCOPED_TRACE(&c - kCases);
        ExpectComparison(LET_LIST, &c.element, &c.key, c.notLess, c.equal);
    }
    for (FLIST* list : {lists[0], lists[1], lists[2], longer}) {
        DestroyList(list);
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
    const TestList list(Numbers{10, 20, 30});
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
        EXPECT_EQ(list.Go(Record, 5), c.result);
        EXPECT_EQ(calls.param, 5);
        EXPECT_EQ(calls.seen, c.seen);
        EXPECT_EQ(ListAccess::CurrentIndex(*list),
                  c.result != 0 ? c.result : static_cast<uint32_t>(c.from));
    }
}

TEST(List, FunctionsPlaceInsertions) {
    // clang-format off
    const struct { int32_t accepted; int atEnd; uint32_t result; Numbers after; } kCases[] = {
        {20, 0, 2, {10, 9, 20}}, {99, 1, 3, {10, 20, 9}}, {99, 2, 0, {10, 20}},
    };
    // clang-format on
    for (const auto& c : kCases) {
        const TestList list(Numbers{10, 20});
        calls = {{}, c.accepted, 1, c.atEnd};
        EXPECT_EQ(list.Add(9, Record, 5), c.result);
        EXPECT_EQ(calls.param, 5);
        EXPECT_EQ(list.All(), c.after) << c.accepted << " " << c.atEnd;
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
    const TestList list(Numbers{1, 2, 3, 4, 5, 6});
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

// Without memory for a text its element holds none; without memory for a node nothing changes.
TEST(List, WithoutMemory) {
    const auto make = [] { return std::make_shared<TestList>(Numbers{}); };
    RunWithFailures("list of numbers", make, [](const TestList& list) {
        for (int32_t number = 0; number < 40; ++number) {
            const Numbers before = list.All();
            if (list.Add(number, LC_FIRST) == 0) {
                EXPECT_EQ(list.All(), before);
                EXPECT_EQ(list->Clear(), 1);
                return kShort;
            }
            EXPECT_TRUE(ListAccess::Check(*list.operator->()));
        }
        return std::to_string(CardinalityOfList(list));
    });
    const auto makeText = [] {
        auto list = std::make_shared<TestList>(LET_STRING);
        InsertElementOfList(*list, u"text", LC_LAST, 0);
        return list;
    };
    RunWithFailures("text", makeText, [](const TestList& list) {
        const uint32_t at = WriteElementOfList(list, u"other", nullptr, LC_FIRST, 0);
        EXPECT_EQ(TextAt(list, 1), at == 1 ? u"other" : u"(null)");
        return at == 1 ? "other" : kShort;
    });
    const auto creation = [] {
        FLIST* list = CreateList(16, LET_STRING, 0, nullptr);
        const bool made = list && list->GetList();
        EXPECT_TRUE(made || !InsertElementOfList(list, u"a", LC_LAST, 0));
        EXPECT_EQ(DestroyList(list), list ? 1 : 0);
        return made ? "made" : kShort;
    };
    RunWithFailures({"list", [&] { return creation; }});
}

}  // namespace
}  // namespace lq::test
