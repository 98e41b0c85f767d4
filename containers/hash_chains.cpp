// The buckets and their chains, which order the entries: for iteration, and for derived classes
// that walk or change the chains themselves.
//
// A table that is only filled and searched, as the tables' indexes are, needs no order. So the
// entries are in one list at first, the newest in front. When the order is asked for, they are
// chained into their buckets from the oldest to the newest, which gives every chain the order that
// it would have had if the entries had been chained one by one.
#include <algorithm>
#include <array>

#include "containers/hash_table_access.h"
#include "lq_data/detail/chars.h"
#include "lq_data/hash_table.h"

namespace {

namespace chars = lq::chars;

constexpr std::size_t kMaxHashedLength = 511;  // characters; longer keys hash to 0
constexpr std::size_t kShifts = 512;

consteval std::array<uint8_t, kShifts> MakeShiftTable() {
    constexpr uint8_t kCycle[] = {0, 24, 3, 21, 5, 19, 7, 17, 9, 15, 11};
    std::array<uint8_t, kShifts> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = kCycle[i % sizeof(kCycle)];
    }
    return table;
}

constexpr std::array<uint8_t, kShifts> kShiftTable = MakeShiftTable();

// Mixes the key's bytes, the low byte of a character before its high byte. The walk ends at the
// first byte where a zero 16-bit unit begins, which may lie across two characters.
template <typename Convert>
uint32_t Hash(const char16_t* key, Convert convert) {
    uint32_t hash = 0;
    std::size_t at = 0;
    for (uint32_t c = convert(*key); c != 0; at = (at + 2) % kShifts) {
        const uint32_t next = convert(*++key);
        hash ^= (c & 0xFF) << kShiftTable[at];
        if ((c >> 8) == 0 && (next & 0xFF) == 0) {
            break;
        }
        hash ^= (c >> 8) << kShiftTable[at + 1];
        c = next;
    }
    return hash;
}

// The position before the first entry.
void* StartPosition() {
    return reinterpret_cast<void*>(~std::uintptr_t{0});
}

}  // namespace

uint32_t HashTable::FullHash(const KEY& key) const {
    if (!key.text || key.length > kMaxHashedLength) {
        return 0;
    }
    return caseSensitive_ ? Hash(key.text, [](char16_t c) { return c; })
                          : Hash(key.text, chars::ToUpper);
}

// Chains the entries into buckets, unless that was done before. False when memory is short for the
// buckets: the entries then stay in the one list.
bool HashTable::MakeChains() const {
    if (buckets_) {
        return true;
    }
    buckets_ = lq::AllocateArray<CAssoc*>(size_);
    if (!buckets_) {
        return false;
    }
    std::fill_n(buckets_, size_, nullptr);
    CAssoc* oldestFirst = nullptr;
    while (CAssoc* entry = unchained_) {
        unchained_ = entry->next;
        entry->next = oldestFirst;
        oldestFirst = entry;
    }
    while (CAssoc* entry = oldestFirst) {
        oldestFirst = entry->next;
        Chain(entry);
    }
    return true;
}

void HashTable::Chain(CAssoc* entry) const {
    CAssoc** head = &unchained_;
    if (buckets_) {
        entry->bucket = HashIndex({entry->key, entry->length, 0});
        head = &buckets_[entry->bucket];
    }
    entry->next = *head;
    entry->link = head;
    if (entry->next) {
        entry->next->link = &entry->next;
    }
    *head = entry;
}

// Takes an entry out of its chain. The `link` of an entry is kept only as long as no entry is
// chained by hand, which is as long as there is a directory. Without it, what leads to the entry is
// looked for along the chain of its `bucket`.
void HashTable::Unchain(CAssoc* entry) {
    CAssoc** link = entry->link;
    if (!hasDirectory_) {
        link = buckets_ ? &buckets_[entry->bucket] : &unchained_;
        while (*link != entry) {
            link = &(*link)->next;
        }
    }
    *link = entry->next;
    if (entry->next) {
        entry->next->link = link;
    }
}

uint32_t HashTable::BucketOf(const CAssoc& entry) const {
    return buckets_ ? entry.bucket : HashIndex({entry.key, entry.length, 0});
}

HashTable::CAssoc* HashTable::FindInChain(CAssoc* entry, const char16_t* key) const {
    while (entry && !IsEqual(entry->key, key)) {
        entry = entry->next;
    }
    return entry;
}

// The next entry of that key in the chain of `at`.
HashTable::CAssoc* HashTable::FindBehind(const CAssoc& at, const char16_t* key) const {
    const bool isInChain = MakeChains() || BucketOf(at) == HashIndex(KeyOf(key));
    return isInChain ? FindInChain(at.next, key) : nullptr;
}

// When memory is short for the buckets, iteration goes through the one list instead: the next two
// functions then look through all of it for each step. That is slow, but every entry comes, in the
// same order.

HashTable::CAssoc* HashTable::NextInChain(const CAssoc& entry) const {
    CAssoc* next = entry.next;
    while (!buckets_ && next && BucketOf(*next) != BucketOf(entry)) {
        next = next->next;
    }
    return next;
}

// The head of the first chain that is not empty, from `bucket` on; null for none.
HashTable::CAssoc* HashTable::FirstFrom(uint32_t bucket) const {
    if (buckets_) {
        CAssoc** const head = std::find_if(buckets_ + std::min(bucket, size_), buckets_ + size_,
                                           [](const CAssoc* entry) { return entry; });
        return head != buckets_ + size_ ? *head : nullptr;
    }
    CAssoc* first = nullptr;
    for (CAssoc* entry = unchained_; entry; entry = entry->next) {
        if (BucketOf(*entry) >= bucket && (!first || BucketOf(*entry) < BucketOf(*first))) {
            first = entry;
        }
    }
    return first;
}

void* HashTable::GetStartPosition() const {
    return count_ > 0 ? StartPosition() : nullptr;
}

void HashTable::GetNextAssoc(void*& pos, const char16_t*& key, uint32_t& value) const {
    if (count_ > 0) {
        MakeChains();
    }
    const CAssoc* entry = pos == StartPosition() ? FirstFrom(0) : static_cast<const CAssoc*>(pos);
    pos = nullptr;
    key = nullptr;
    value = 0;
    if (entry) {
        CAssoc* const next = NextInChain(*entry);
        pos = next ? next : FirstFrom(BucketOf(*entry) + 1);
        key = entry->key;
        value = entry->value;
    }
}

HashTable::CAssoc** HashTable::GetHashTableAssoc() {
    const bool hadEntries = count_ > 0 || freeList_;  // since the table was made or emptied
    return hadEntries && !MakeChains() ? nullptr : buckets_;
}

bool HashTable::Check() const {
    const auto blockCount = lq::containers::HashTableAccess::BlockCount(*this);
    const std::size_t total = std::size_t{kBlockEntries} * blockCount;
    std::size_t chained = 0;
    const auto check = [&](const CAssoc* entry, uint32_t bucket) {
        for (; entry; entry = entry->next) {
            if (++chained > total || (hasDirectory_ && *entry->link != entry) ||
                (buckets_ && (entry->bucket != bucket || HashIndex(KeyOf(entry->key)) != bucket))) {
                return false;
            }
        }
        return true;
    };
    bool isSound = check(unchained_, 0) && !(buckets_ && unchained_);
    for (uint32_t bucket = 0; isSound && buckets_ && bucket < size_; ++bucket) {
        isSound = check(buckets_[bucket], bucket);
    }
    std::size_t free = 0;
    for (const CAssoc* entry = freeList_; entry && free <= total; entry = entry->next) {
        ++free;
    }
    return isSound && chained == static_cast<std::size_t>(count_) && chained + free == total &&
           (!hasDirectory_ || CheckDirectory());
}
