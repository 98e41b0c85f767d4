#include "lq_data/hash_table.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "containers/hash_table_access.h"
#include "containers/slot_step.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/text/utf.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/test_allocator.h"

namespace {

using lq::containers::HashTableAccess;
using lq::test::kShort;
using lq::test::RunWithFailures;
using Text = std::u16string;

TEST(HashTable, EmptyAndNullKeys) {
    HashTable table(0, 1);
    void* pos = &table;
    uint32_t value = 5;
    EXPECT_EQ(table.GetID(u"a"), -1);
    EXPECT_EQ(table.RemoveKey(u"a"), 0);
    EXPECT_EQ(table.Lookup(u"a", value), 0);
    EXPECT_EQ(value, 5u);
    EXPECT_EQ(table.GetPos(u"a", pos), -1);
    EXPECT_EQ(pos, nullptr);
    EXPECT_EQ(table.GetStartPosition(), nullptr);
    EXPECT_EQ(table.GetHashTableAssoc(), nullptr);
    table.Insert(u"a", 1);
    table.RemoveKey(u"a");
    EXPECT_NE(table.GetHashTableAssoc(), nullptr);
    table.RemoveAll();
    EXPECT_EQ(table.GetHashTableAssoc(), nullptr);
    EXPECT_EQ(table.Insert(nullptr, 1), nullptr);
    EXPECT_NE(table.Insert(u"", 1), nullptr);
    EXPECT_EQ(table.GetID(nullptr), -1);
    EXPECT_EQ(table.RemoveKey(nullptr), 0);
    EXPECT_EQ(table.GetPos(u"", pos), 1);
    EXPECT_EQ(table.GetNext(nullptr, pos), -1);
    EXPECT_EQ(pos, nullptr);
    HashTable resized(5, 1);
    resized.InitHashTable(0);
    EXPECT_EQ(resized.GetHashTableSize(), 1u);

    // The position before the first entry outlives the entries; behind the last there is none.
    const char16_t* key = u"?";
    pos = table.GetStartPosition();
    table.Clear();
    for (int i = 0; i < 2; ++i) {
        table.GetNextAssoc(pos, key, value);
        EXPECT_EQ(pos, nullptr);
        EXPECT_EQ(key, nullptr);
        EXPECT_EQ(value, 0u);
    }
}

TEST(HashTable, BlocksAndReuseOfEntries) {
    HashTable table(5, 1);
    const auto nameOf = [](int i) { return u"n" + Text(1, static_cast<char16_t>(u'a' + i)); };
    for (int i = 0; i < 21; ++i) {
        EXPECT_EQ(HashTableAccess::BlockCount(table), i == 0 ? 0u : 1u) << i;
        table.Insert(nameOf(i).c_str(), i);
    }
    EXPECT_EQ(HashTableAccess::BlockCount(table), 2u);

    void* removed;
    table.GetPos(nameOf(3).c_str(), removed);
    table.Delete(nameOf(3).c_str());
    void* added;
    table.Insert(u"other", 9);
    table.GetPos(u"other", added);
    EXPECT_EQ(added, removed);

    table.RemoveAll();
    EXPECT_EQ(HashTableAccess::BlockCount(table), 0u);
    EXPECT_EQ(table.GetStartPosition(), nullptr);
    EXPECT_EQ(table.GetHashTableSize(), 5u);
    EXPECT_TRUE(HashTableAccess::Check(table));
    table[u"again"] = 3;
    EXPECT_EQ(table.GetID(u"again"), 3);
}

TEST(HashTable, CreatedByName) {
    const std::unique_ptr<CObject> memory(CRuntimeClass::CreateObject("CMemBlock"));
    ASSERT_NE(memory, nullptr);
    EXPECT_STREQ(memory->GetRuntimeClass()->name, "CMemBlock");
    const std::unique_ptr<CObject> object(CRuntimeClass::CreateObject("HashTable"));
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->IsKindOf(&CMemBlock::classCMemBlock));
    auto& table = static_cast<HashTable&>(*object);
    table.Insert(u"a", 1);
    EXPECT_EQ(table.GetHashTableSize(), 233u);
    EXPECT_EQ(table.GetID(u"A"), -1);
}

std::vector<int32_t> AllOf(const HashTable& table, const Text& key) {
    std::vector<int32_t> ids;
    void* pos;
    for (int32_t id = table.GetPos(key.c_str(), pos); pos; id = table.GetNext(key.c_str(), pos)) {
        ids.push_back(id);
    }
    EXPECT_EQ(table.GetNext(key.c_str(), pos), -1);
    return ids;
}

std::string OrderOf(const HashTable& table) {
    EXPECT_TRUE(HashTableAccess::Check(table));
    std::string order;
    for (void* pos = table.GetStartPosition(); pos;) {
        const char16_t* key;
        uint32_t value;
        table.GetNextAssoc(pos, key, value);
        order += lq::host::EncodeUtf8(key) + std::to_string(value) + " ";
    }
    return order;
}

// The buckets are made when the order is asked for. It is the same when memory is short for them.
TEST(HashTable, OrderWithoutMemoryForBuckets) {
    HashTable tables[2] = {{3, 0}, {3, 0}};
    for (HashTable& table : tables) {
        for (int32_t i = 0; i < 30; ++i) {
            const Text name(1, static_cast<char16_t>((i % 2 != 0 ? u'a' : u'A') + i % 7));
            table.Insert(name.c_str(), i, 1);
        }
        // With and without memory for buckets.
        const lq::test::FailingAllocation failing(&table == tables ? 0 : 1, true);
        EXPECT_EQ(OrderOf(table),
                  "b29 e25 B22 E18 b15 e11 B8 E4 b1 F26 c23 f19 C16 F12 c9 f5 C2 "
                  "A28 g27 D24 a21 G20 d17 A14 g13 D10 a7 G6 d3 A0 ");
        // Of another key than that of the position: within the chain only.
        void* pos = nullptr;
        table.GetPos(u"e", pos);
        EXPECT_EQ(table.GetNext(u"B", pos), 22);
        table.GetPos(u"e", pos);
        EXPECT_EQ(table.GetNext(u"a", pos), -1);
        EXPECT_EQ(table.RemoveKey(u"E", 11), 1);
        EXPECT_EQ(OrderOf(table).find("e11"), std::string::npos);
        EXPECT_EQ(AllOf(table, u"e"), (std::vector<int32_t>{25, 18, 4}));
        EXPECT_EQ(table.GetHashTableAssoc() == nullptr, &table != tables);
    }
    EXPECT_EQ(OrderOf(tables[1]), OrderOf(tables[0])) << "with memory back";
}

// Enough names for the directory to grow several times and to close gaps of all kinds.
TEST(HashTable, ManyNamesComeAndGo) {
    std::mt19937 random(5);
    for (const int caseSensitive : {0, 1}) {
        HashTable table(233, caseSensitive);
        std::vector<Text> names;
        for (int32_t i = 0; i < 3000; ++i) {
            const std::string digits = std::to_string(i);
            names.push_back(u"Motor_" + Text(digits.begin(), digits.end()));
            table.Insert(names.back().c_str(), i);
        }
        std::vector<int32_t> left(names.size());
        std::iota(left.begin(), left.end(), 0);
        std::shuffle(left.begin(), left.end(), random);
        while (!left.empty()) {
            EXPECT_EQ(table.RemoveKey(names[static_cast<size_t>(left.back())].c_str()), 1);
            left.pop_back();
            if (left.size() % 500 == 0) {
                EXPECT_TRUE(HashTableAccess::Check(table)) << left.size();
            }
        }
        EXPECT_EQ(table.IsEmpty(), 1);
    }
}

// Chains and unchains entries as a derived class may.
class ByHand : public HashTable {
  public:
    using HashTable::HashTable;
    // False when memory is short. Without `bucket` the entry's stays as it came.
    bool Chain(const char16_t* key, uint32_t value, bool setsBucket = true) {
        unsigned int bucket;
        GetAssocAt(key, bucket);
        CAssoc* entry = NewAssoc(key, value);
        CAssoc** const chains = entry ? GetHashTableAssoc() : nullptr;
        if (!chains) {
            if (entry) {
                FreeAssoc(entry);
            }
            return false;
        }
        entry->bucket = setsBucket ? bucket : entry->bucket;
        entry->next = chains[bucket];
        chains[bucket] = entry;
        return true;
    }
    void TakeAndReturn() { FreeAssoc(NewAssoc()); }
    // The one behind the newest of the key's chain.
    void RemoveSecond(const char16_t* key) {
        unsigned int bucket;
        CAssoc* newest = GetAssocAt(key, bucket);
        CAssoc* second = newest->next;
        newest->next = second->next;
        FreeAssoc(second);
    }
};

TEST(HashTable, EntriesChainedByHandAreFound) {
    ByHand table(3, 0);
    table.Insert(u"a", 1);
    table.Chain(u"A", 2);
    table.TakeAndReturn();
    EXPECT_EQ(table.GetCount(), 2);
    table.Insert(u"a", 3, 1);
    EXPECT_EQ(AllOf(table, u"A"), (std::vector<int32_t>{3, 2, 1}));
    EXPECT_EQ(table.RemoveKey(u"a", 2), 1);
    EXPECT_EQ(AllOf(table, u"a"), (std::vector<int32_t>{3, 1}));
    EXPECT_TRUE(table.Chain(u"d", 4) && table.Chain(u"d", 5));
    EXPECT_EQ(table.RemoveKey(u"D"), 1);
    EXPECT_EQ(AllOf(table, u"d"), (std::vector<int32_t>{4}));
    EXPECT_EQ(AllOf(table, u"a"), (std::vector<int32_t>{3, 1}));
    EXPECT_TRUE(HashTableAccess::Check(table));

    ByHand first(3, 1);  // the first entry comes by hand, and the bucket's number is of no account
    EXPECT_TRUE(first.Chain(u"b", 1, false));
    EXPECT_TRUE(first.Chain(u"b", 2, false));
    EXPECT_EQ(AllOf(first, u"b"), (std::vector<int32_t>{2, 1}));
}

TEST(HashTable, EntriesRemovedByHandLeaveTheOthers) {
    for (const bool fails : {false, true}) {
        ByHand table(3, 1);
        table.Insert(fails ? u"b" : u"a", fails ? 7 : 1);
        table.Insert(fails ? u"a" : u"b", fails ? 1 : 7);  // without buckets it is the next of any
        table.Insert(u"a", 2, 1);
        const lq::test::FailingAllocation failing(fails ? 1 : 0, fails);
        table.RemoveSecond(u"a");
        EXPECT_EQ(AllOf(table, u"a"), (std::vector<int32_t>{2})) << fails;
        EXPECT_EQ(table.GetID(u"b"), 7) << fails;
        EXPECT_EQ(table.Insert(u"a", 9), nullptr) << fails;
        EXPECT_EQ(table.RemoveKey(u"a"), 1) << fails;
        EXPECT_EQ(table.GetID(u"a"), -1) << fails;
        EXPECT_TRUE(HashTableAccess::Check(table)) << fails;
    }
}

// Every insertion that fails leaves the entries as they were, and succeeds when memory is back.
TEST(HashTable, FailedInsertionLeavesTheEntries) {
    const auto entries = [](const HashTable& table) {
        EXPECT_TRUE(HashTableAccess::Check(table));
        std::string text = std::to_string(table.GetCount()) + ":";
        for (const char16_t* key : {u"a", u"b", u"c", u"d"}) {
            text += " " + std::to_string(table.GetID(key));
        }
        return text;
    };
    using Insertion = bool (*)(ByHand & table);
    const Insertion kInsertions[] = {
        [](ByHand& table) { return table.Insert(u"c", 3) != nullptr; },
        [](ByHand& table) { return table.Insert(u"b", 4, 1) != nullptr; },
        [](ByHand& table) { return (table[u"d"] = 7, table.GetID(u"d") == 7); },
        [](ByHand& table) { return table.Chain(u"c", 3); },
    };
    for (const Insertion insert : kInsertions) {
        for (const bool isEmpty : {true, false}) {
            const auto make = [isEmpty] {
                auto table = std::make_shared<ByHand>(3, 1);
                if (!isEmpty) {
                    table->Insert(u"a", 1);
                    table->Insert(u"b", 2);
                }
                return table;
            };
            RunWithFailures("insertion", make, [&](ByHand& table) {
                const std::string before = entries(table);
                if (insert(table)) {
                    return entries(table);
                }
                EXPECT_EQ(entries(table), before);
                return table.GetID(u"c") < 0 ? kShort : "refused";
            });
        }
    }
}

TEST(HashTable, WithoutMemoryTheSubscriptIsAZeroOfNoEntry) {
    HashTable table(3, 1);
    const lq::test::FailingAllocation failing(1, true);
    table[u"a"] = 7;
    EXPECT_EQ(table[u"a"], 0u);
    EXPECT_EQ(table.GetCount(), 0);
}

// The values come from a separate program that walks the UTF-16LE bytes.
TEST(HashTable, HashOfKeys) {
    // A zero unit may lie across two characters; the shifts start over at byte 512.
    // clang-format off
    const struct { Text key; uint32_t hash; } kCases[] = {
        {u"", 0}, {u"A", 0x41}, {u"a", 0x61}, {u"AB", 0x251}, {u"VAR_INPUT", 0x5802C59E},
        {u"Motor_1", 0x31022635}, {u"\u00E4\u00D6", 0x654}, {u"\u0100", 0x1000000},
        {u"A\u0100B", 0x41}, {u"AB\u0100C", 0x251}, {u"\u4E2D\u6587", 0x42A00415},
        {Text(256, u'x'), 0x740F0C00}, {Text(255, u'x') + u"yy", 0x740F0C59},
        {Text(511, u'x'), 0xF00}, {Text(511, u'x') + u"y", 0},
    };
    // clang-format on
    const HashTable table(233, 1);
    for (const auto& c : kCases) {
        EXPECT_EQ(HashTableAccess::FullHash(table, c.key.c_str()), c.hash)
            << testing::PrintToString(c.key);
        EXPECT_EQ(HashTableAccess::HashIndex(table, c.key.c_str()), c.hash % 233)
            << testing::PrintToString(c.key);
    }
    EXPECT_EQ(HashTableAccess::FullHash(table, nullptr), 0u);

    // Without regard to case it is the hash of the upper-case form.
    const HashTable anyCase(233, 0);
    for (const auto& c : kCases) {
        Text upper = c.key;
        std::transform(upper.begin(), upper.end(), upper.begin(), lq::chars::ToUpper);
        EXPECT_EQ(HashTableAccess::FullHash(anyCase, c.key.c_str()),
                  HashTableAccess::FullHash(table, upper.c_str()))
            << testing::PrintToString(c.key);
    }
    EXPECT_EQ(HashTableAccess::FullHash(anyCase, u"\u0131d"),  // the dotless i has the I of ASCII
              HashTableAccess::FullHash(table, u"ID"));
}

// Both ways to look at a step of the directory.
TEST(HashTable, EndsInAStepOfTheDirectory) {
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i) {
        uint16_t tags[lq::containers::kSlotStep];
        std::generate(std::begin(tags), std::end(tags), [&] {
            constexpr uint16_t kTags[] = {0, 1, 0x7FFF, 0x8000, 0xFFFF};
            return kTags[random() % std::size(kTags)];
        });
        for (const unsigned number : {1u, 0x7FFFu, 0x8000u, 0xFFFFu, 2u}) {
            const auto tag = static_cast<uint16_t>(number);
            EXPECT_EQ(lq::containers::EndsInStep(tags, tag),
                      lq::containers::PlainEndsInStep(tags, tag));
        }
    }
}

}  // namespace
