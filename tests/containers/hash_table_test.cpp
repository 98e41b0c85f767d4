#include "lq_data/hash_table.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "containers/hash_table_access.h"
#include "frame/chars.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/test_allocator.h"

namespace {

using lq::containers::HashTableAccess;
using lq::test::Attempt;
using lq::test::kShort;
using lq::test::RunWithFailures;
using Text = std::u16string;

std::string Narrow(const Text& text) {
    return {text.begin(), text.end()};
}

TEST(HashTable, KeysAround512CharactersAreComparedInFull) {
    HashTable table(233, 0);
    std::vector<Text> keys;
    for (const std::size_t length : {510u, 511u, 512u, 513u, 2000u}) {
        for (const char16_t last : {u'1', u'2'}) {
            keys.push_back(Text(length - 1, u'k') + last);
            EXPECT_NE(table.Insert(keys.back().c_str(), static_cast<int32_t>(keys.size())),
                      nullptr);
        }
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(table.GetID(keys[i].c_str()), static_cast<int32_t>(i + 1)) << keys[i].size();
    }
    Text upper = keys.back();
    std::replace(upper.begin(), upper.end(), u'k', u'K');
    EXPECT_EQ(table.GetID(upper.c_str()), static_cast<int32_t>(keys.size()));
}

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
    EXPECT_EQ(table.Insert(nullptr, 1), nullptr);
    EXPECT_NE(table.Insert(u"", 1), nullptr);
    EXPECT_EQ(table.GetID(nullptr), -1);
    EXPECT_EQ(table.RemoveKey(nullptr), 0);
    EXPECT_EQ(table.GetID(u""), 1);

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

TEST(HashTable, CheckSeesDamage) {
    const struct {
        const char* name;
        void (*damage)(HashTable& table, HashTable::CAssoc& entry);
        bool hasBuckets;
    } kCases[] = {
        {"length", [](HashTable&, HashTable::CAssoc& entry) { ++entry.length; }, false},
        {"hash", [](HashTable&, HashTable::CAssoc& entry) { ++entry.hash; }, false},
        {"tag", [](HashTable&, HashTable::CAssoc& entry) { entry.hash += 0x10000; }, false},
        {"another key", [](HashTable&, HashTable::CAssoc& entry) { ++*entry.key; }, false},
        {"an entry twice", [](HashTable&, HashTable::CAssoc& entry) { entry.next = &entry; },
         false},
        {"bucket", [](HashTable&, HashTable::CAssoc& entry) { ++entry.bucket; }, true},
        {"key of another bucket", [](HashTable&, HashTable::CAssoc& entry) { ++*entry.key; }, true},
        {"key of another hash", [](HashTable&, HashTable::CAssoc& entry) { *entry.key += 3; },
         true},
        {"an entry twice in a chain",
         [](HashTable&, HashTable::CAssoc& entry) { entry.next = &entry; }, true},
        {"a chain lost",
         [](HashTable& table, HashTable::CAssoc& entry) {
             table.GetHashTableAssoc()[entry.bucket] = nullptr;
         },
         true},
    };
    for (const auto& c : kCases) {
        HashTable table(3, 1);
        table.Insert(u"a", 1);
        if (c.hasBuckets) {
            ASSERT_NE(table.GetHashTableAssoc(), nullptr);
        }
        void* pos;
        table.GetPos(u"a", pos);
        auto& entry = *static_cast<HashTable::CAssoc*>(pos);
        const HashTable::CAssoc intact = entry;
        EXPECT_TRUE(HashTableAccess::Check(table));
        c.damage(table, entry);
        EXPECT_FALSE(HashTableAccess::Check(table)) << c.name;
        entry = intact;
        entry.key[0] = u'a';
        if (c.hasBuckets) {
            table.GetHashTableAssoc()[entry.bucket] = &entry;
        }
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

TEST(HashTable, SizeChangesOnlyWhileEmpty) {
    HashTable table(233, 1);
    table.InitHashTable(0);
    EXPECT_EQ(table.GetHashTableSize(), 1u);
    table.InitHashTable(3);
    EXPECT_EQ(table.GetHashTableSize(), 3u);
    table.Insert(u"a", 1);
    table.InitHashTable(7);
    EXPECT_EQ(table.GetHashTableSize(), 3u);
    EXPECT_EQ(table.GetID(u"a"), 1);
}

TEST(HashTable, CreatedByName) {
    for (const char* name : {"HashTable", "CMemBlock"}) {
        CObject* object = CRuntimeClass::CreateObject(name);
        ASSERT_NE(object, nullptr) << name;
        EXPECT_STREQ(object->GetRuntimeClass()->name, name);
        EXPECT_TRUE(object->IsKindOf(&CMemBlock::classCMemBlock)) << name;
        delete object;
    }
    CObject* object = CRuntimeClass::CreateObject("HashTable");
    auto* table = static_cast<HashTable*>(object);
    table->Insert(u"a", 1);
    EXPECT_EQ(table->GetHashTableSize(), 233u);
    EXPECT_EQ(table->GetID(u"A"), -1);
    delete object;
}

// Random operations against a plain vector, newest entry first, with few names and few buckets.
class Model {
  public:
    explicit Model(bool caseSensitive) : caseSensitive_(caseSensitive) {}

    bool Equal(const Text& a, const Text& b) const {
        return caseSensitive_ ? a == b : lq::chars::EqualNoCase(a.c_str(), b.c_str());
    }
    std::vector<int32_t> All(const Text& key) const {
        std::vector<int32_t> ids;
        for (const auto& [name, id] : entries) {
            if (Equal(name, key)) {
                ids.push_back(id);
            }
        }
        return ids;
    }
    void Add(const Text& key, int32_t id) { entries.insert(entries.begin(), {key, id}); }
    auto Find(const Text& key, const int32_t* id) {
        return std::find_if(entries.begin(), entries.end(), [&](const auto& entry) {
            return Equal(entry.first, key) && (!id || entry.second == *id);
        });
    }
    void Set(const Text& key, int32_t id) {
        const auto found = Find(key, nullptr);
        if (found == entries.end()) {
            Add(key, id);
        } else {
            found->second = id;
        }
    }
    bool Remove(const Text& key, const int32_t* id) {
        const auto found = Find(key, id);
        if (found == entries.end()) {
            return false;
        }
        entries.erase(found);
        return true;
    }

    std::vector<std::pair<Text, int32_t>> entries;

  private:
    bool caseSensitive_;
};

std::vector<int32_t> AllOf(const HashTable& table, const Text& key) {
    std::vector<int32_t> ids;
    void* pos;
    for (int32_t id = table.GetPos(key.c_str(), pos); pos; id = table.GetNext(key.c_str(), pos)) {
        ids.push_back(id);
    }
    EXPECT_EQ(table.GetNext(key.c_str(), pos), -1);
    return ids;
}

// The iteration yields the model's entries by ascending bucket, newest first within one.
void CheckIteration(const HashTable& table, const Model& model) {
    auto expected = model.entries;
    std::stable_sort(expected.begin(), expected.end(), [&](const auto& a, const auto& b) {
        return HashTableAccess::HashIndex(table, a.first.c_str()) <
               HashTableAccess::HashIndex(table, b.first.c_str());
    });
    std::vector<std::pair<Text, int32_t>> visited;
    for (void* pos = table.GetStartPosition(); pos;) {
        const char16_t* key;
        uint32_t value;
        table.GetNextAssoc(pos, key, value);
        ASSERT_NE(key, nullptr);
        visited.emplace_back(key, static_cast<int32_t>(value));
    }
    EXPECT_EQ(visited, expected);
}

void RunRandomOperations(bool caseSensitive, uint32_t buckets, unsigned seed) {
    const Text kNames[] = {u"a", u"A",      u"b",      u"Motor_1",      u"MOTOR_1",
                           u"",  u"\u00E4", u"\u00C4", Text(512, u'z'), Text(513, u'z')};
    std::mt19937 random(seed);
    HashTable table(buckets, caseSensitive ? 1 : 0);
    Model model(caseSensitive);
    for (int step = 0; step < 1000; ++step) {
        // Every other life of the table has no buckets until its end.
        const bool hasBuckets = step / 50 % 2 == 0;
        if (step % 50 == 0) {
            CheckIteration(table, model);
            table.Clear();
            model.entries.clear();
        }
        const Text& name = kNames[random() % std::size(kNames)];
        const auto id = static_cast<int32_t>(random() % 4);
        const bool exists = !model.All(name).empty();
        SCOPED_TRACE(testing::Message() << "step " << step << " name " << Narrow(name));
        switch (random() % 7) {
            case 0:
            case 1:
                EXPECT_EQ(table.Insert(name.c_str(), id) == nullptr, exists);
                if (!exists) {
                    model.Add(name, id);
                }
                break;
            case 2:
            case 3:
                EXPECT_EQ(table.Insert(name.c_str(), id, 1), name);
                model.Add(name, id);
                break;
            case 4:
                table.SetAt(name.c_str(), static_cast<uint32_t>(id));
                model.Set(name, id);
                break;
            case 5:
                EXPECT_EQ(table.RemoveKey(name.c_str()), model.Remove(name, nullptr));
                break;
            default:
                EXPECT_EQ(table.RemoveKey(name.c_str(), id), model.Remove(name, &id));
        }
        ASSERT_TRUE(HashTableAccess::Check(table));
        ASSERT_EQ(table.GetCount(), static_cast<int32_t>(model.entries.size()));
        ASSERT_EQ(table.IsEmpty(), model.entries.empty());
        ASSERT_EQ(AllOf(table, name), model.All(name));
        if (hasBuckets && step % 10 == 0) {
            CheckIteration(table, model);
        }
    }
}

TEST(HashTable, RandomOperationsAgainstAModel) {
    for (const uint32_t buckets : {1u, 3u, 233u}) {
        for (const bool caseSensitive : {false, true}) {
            SCOPED_TRACE(testing::Message() << buckets << " buckets, case " << caseSensitive);
            RunRandomOperations(caseSensitive, buckets, buckets + caseSensitive);
        }
    }
}

// The buckets are made when the order is asked for. It is the same when memory is short for them.
TEST(HashTable, OrderWithoutMemoryForBuckets) {
    HashTable table(3, 0);
    Model model(false);
    for (int32_t i = 0; i < 30; ++i) {
        const Text name(1, static_cast<char16_t>((i % 2 != 0 ? u'a' : u'A') + i % 7));
        table.Insert(name.c_str(), i, 1);
        model.Add(name, i);
    }
    // Of another key than that of the position: within the chain only.
    const auto nextB = [&table] {
        void* pos = nullptr;
        table.GetPos(u"e", pos);
        return table.GetNext(u"B", pos);
    };
    {
        const lq::test::FailingAllocation failing(1, true);
        EXPECT_EQ(table.GetHashTableAssoc(), nullptr);
        CheckIteration(table, model);
        EXPECT_EQ(nextB(), 22);
        void* pos = nullptr;
        table.GetPos(u"e", pos);
        EXPECT_EQ(table.GetNext(u"a", pos), -1);
        constexpr int32_t kOlder = 18;
        EXPECT_EQ(table.RemoveKey(u"E", kOlder), 1);
        model.Remove(u"E", &kOlder);
        CheckIteration(table, model);
        EXPECT_TRUE(HashTableAccess::Check(table));
    }
    CheckIteration(table, model);
    EXPECT_EQ(nextB(), 22);
    EXPECT_TRUE(HashTableAccess::Check(table));
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
    struct {
        const char* name;
        bool (*insert)(ByHand& table);
    } const kInsertions[] = {
        {"insert", [](ByHand& table) { return table.Insert(u"c", 3) != nullptr; }},
        {"insert again", [](ByHand& table) { return table.Insert(u"b", 4, 1) != nullptr; }},
        {"subscript",
         [](ByHand& table) {
             table[u"d"] = 7;
             return table.GetID(u"d") == 7;
         }},
        {"by hand", [](ByHand& table) { return table.Chain(u"c", 3); }},
    };
    for (const auto& insertion : kInsertions) {
        for (const bool isEmpty : {true, false}) {
            RunWithFailures({insertion.name, [&]() -> Attempt {
                                 const auto table = std::make_shared<ByHand>(3, 1);
                                 if (!isEmpty) {
                                     table->Insert(u"a", 1);
                                     table->Insert(u"b", 2);
                                 }
                                 return [&, table] {
                                     const std::string before = entries(*table);
                                     if (insertion.insert(*table)) {
                                         return entries(*table);
                                     }
                                     EXPECT_EQ(entries(*table), before);
                                     return table->GetID(u"c") < 0 ? kShort : "refused";
                                 };
                             }});
        }
    }
}

TEST(HashTable, WithoutMemoryTheSubscriptIsAZeroOfNoEntry) {
    HashTable table(3, 1);
    const lq::test::FailingAllocation failing(1, true);
    table[u"a"] = 7;
    EXPECT_EQ(table[u"b"], 0u);
    EXPECT_EQ(table.GetCount(), 0);
}

}  // namespace
