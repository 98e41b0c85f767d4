#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/containers/list_util.h"
#include "tests/support/memory_jobs.h"

namespace lq::test {
namespace {

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
        EXPECT_EQ(list->Foreach(
                      LC_NEXT, [](FLIST*, uint32_t, void*, void*, int32_t) { return 1; }, 0),
                  0u);
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

// Without memory for a text its element holds none; without memory for a node nothing changes.
TEST(List, WithoutMemory) {
    RunWithFailures({"list of numbers", []() -> Attempt {
                         const std::shared_ptr<FLIST> list(CreateList(0, LET_MEMORY, 4, nullptr),
                                                           DestroyList);
                         return [=] {
                             for (int32_t number = 0; number < 40; ++number) {
                                 const uint32_t before = CardinalityOfList(list.get());
                                 if (!InsertElementOfList(list.get(), &number, LC_FIRST, 0)) {
                                     EXPECT_EQ(CardinalityOfList(list.get()), before);
                                     ClearList(list.get());
                                     return kShort;
                                 }
                                 EXPECT_TRUE(ListAccess::Check(*list));
                             }
                             return std::to_string(CardinalityOfList(list.get()));
                         };
                     }});
    RunWithFailures(
        {"text", []() -> Attempt {
             const std::shared_ptr<FLIST> list(CreateList(16, LET_STRING, 0, nullptr), DestroyList);
             InsertElementOfList(list.get(), u"text", LC_LAST, 0);
             return [=] {
                 const uint32_t at = WriteElementOfList(list.get(), u"other", nullptr, LC_FIRST, 0);
                 const std::u16string text = TextAt(list.get(), 1);
                 EXPECT_EQ(text, at == 1 ? u"other" : u"(null)");
                 return at == 1 ? "other" : kShort;
             };
         }});
    RunWithFailures({"list", []() -> Attempt {
                         return [] {
                             FLIST* list = CreateList(16, LET_STRING, 0, nullptr);
                             const bool made = list && list->GetList();
                             EXPECT_TRUE(made || !InsertElementOfList(list, u"a", LC_LAST, 0));
                             EXPECT_EQ(DestroyList(list), list ? 1 : 0);
                             return made ? "made" : kShort;
                         };
                     }});
}

}  // namespace
}  // namespace lq::test
