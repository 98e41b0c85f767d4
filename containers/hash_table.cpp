// Chains of entries, the newest in front. The hash shifts and mixes the key's bytes; names that end
// in running numbers share few of its values, so an entry remembers the whole hash, which settles
// most comparisons without a look at the key.
#include <array>
#include <cstring>

#include "containers/hash_table_access.h"
#include "frame/chars.h"
#include "lq_data/containers.h"

LQ_IMPLEMENT_DYNAMIC(HashTable, CMemBlock, &HashTable::CreateObject)

namespace {

namespace chars = lq::chars;

constexpr unsigned int kDefaultSize = 233;
constexpr uint32_t kBlockEntries = 20;
constexpr std::size_t kMaxHashedLength = 511;  // characters; longer keys hash to 0
constexpr std::size_t kShifts = 512;
constexpr int32_t kNotFound = -1;

constexpr std::array<uint8_t, kShifts> MakeShiftTable() {
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
    std::size_t shift = 0;
    const auto mix = [&](uint32_t byte) {
        hash ^= byte << kShiftTable[shift];
        shift = (shift + 1) % kShifts;
    };
    for (uint32_t c = convert(*key); c != 0;) {
        const uint32_t next = convert(*++key);
        mix(c & 0xFF);
        if ((c >> 8) == 0 && (next & 0xFF) == 0) {
            break;
        }
        mix(c >> 8);
        c = next;
    }
    return hash;
}

// At most `limit` + 1.
std::size_t LengthUpTo(const char16_t* text, std::size_t limit) {
    std::size_t n = 0;
    while (n <= limit && text[n] != 0) {
        ++n;
    }
    return n;
}

// The position before the first entry.
void* StartPosition() {
    return reinterpret_cast<void*>(~std::uintptr_t{0});
}

}  // namespace

HashTable::HashTable() : HashTable(kDefaultSize, 1) {}

HashTable::HashTable(uint32_t size, int caseSensitive)
    : caseSensitive_(caseSensitive), size_(size == 0 ? 1 : size) {}

HashTable::~HashTable() {
    RemoveAll();
}

CObject* HashTable::CreateObject() {
    return new HashTable;
}

void HashTable::InitHashTable(unsigned int size) {
    if (count_ != 0) {
        return;
    }
    lq::Release(buckets_);
    size_ = size == 0 ? 1 : size;
    buckets_ = lq::AllocateArray<CAssoc*>(size_);
    for (uint32_t i = 0; buckets_ && i < size_; ++i) {
        buckets_[i] = nullptr;
    }
}

void HashTable::RemoveAll() {
    for (uint32_t i = 0; buckets_ && i < size_; ++i) {
        for (CAssoc* entry = buckets_[i]; entry; entry = entry->next) {
            lq::Release(entry->key);
        }
    }
    lq::Release(buckets_);
    buckets_ = nullptr;
    count_ = 0;
    freeList_ = nullptr;
    DeleteBlocks();
}

uint32_t HashTable::FullHash(const char16_t* key) const {
    if (!key || LengthUpTo(key, kMaxHashedLength) > kMaxHashedLength) {
        return 0;
    }
    return caseSensitive_ ? Hash(key, [](char16_t c) { return c; }) : Hash(key, chars::ToUpper);
}

bool HashTable::IsEqual(const CAssoc& entry, const char16_t* key, uint32_t hash) const {
    if (entry.hash != hash) {
        return false;
    }
    return caseSensitive_ ? chars::Equal(entry.key, key) : chars::EqualNoCase(entry.key, key);
}

HashTable::CAssoc* HashTable::FindFrom(CAssoc* entry, const char16_t* key, uint32_t hash) const {
    if (!key) {
        return nullptr;
    }
    while (entry && !IsEqual(*entry, key, hash)) {
        entry = entry->next;
    }
    return entry;
}

HashTable::CAssoc* HashTable::GetAssocAt(const char16_t* key, unsigned int& bucket) const {
    const uint32_t hash = FullHash(key);
    bucket = hash % size_;
    return Find(key, hash);
}

HashTable::CAssoc* HashTable::Find(const char16_t* key, uint32_t hash) const {
    return buckets_ ? FindFrom(buckets_[hash % size_], key, hash) : nullptr;
}

int HashTable::Lookup(const char16_t* key, uint32_t& value) const {
    unsigned int bucket;
    const CAssoc* entry = GetAssocAt(key, bucket);
    if (!entry) {
        return 0;
    }
    value = entry->value;
    return 1;
}

int32_t HashTable::GetID(const char16_t* key) const {
    void* pos;
    return GetPos(key, pos);
}

int32_t HashTable::GetPos(const char16_t* key, void*& pos) const {
    unsigned int bucket;
    CAssoc* entry = GetAssocAt(key, bucket);
    pos = entry;
    return entry ? static_cast<int32_t>(entry->value) : kNotFound;
}

int32_t HashTable::GetNext(const char16_t* key, void*& pos) const {
    if (!pos) {
        return kNotFound;
    }
    CAssoc* entry = FindFrom(static_cast<CAssoc*>(pos)->next, key, FullHash(key));
    pos = entry;
    return entry ? static_cast<int32_t>(entry->value) : kNotFound;
}

uint32_t& HashTable::operator[](const char16_t* key) {
    const uint32_t hash = FullHash(key);
    CAssoc* entry = Find(key, hash);
    if (!entry) {
        entry = Enter(key, hash, 0);
    }
    if (!entry) {
        noEntry_ = 0;
        return noEntry_;
    }
    return entry->value;
}

const char16_t* HashTable::Insert(const char16_t* key, int32_t id, int allowDuplicate) {
    const uint32_t hash = FullHash(key);
    if (!allowDuplicate && Find(key, hash)) {
        return nullptr;
    }
    const CAssoc* entry = Enter(key, hash, static_cast<uint32_t>(id));
    return entry ? entry->key : nullptr;
}

HashTable::CAssoc* HashTable::Enter(const char16_t* key, uint32_t hash, uint32_t value) {
    if (!key) {
        return nullptr;
    }
    if (!buckets_) {
        InitHashTable(size_);
    }
    CAssoc* entry = buckets_ ? NewAssoc(key, value) : nullptr;
    if (!entry) {
        return nullptr;
    }
    entry->hash = hash;
    entry->bucket = hash % size_;
    entry->next = buckets_[entry->bucket];
    buckets_[entry->bucket] = entry;
    return entry;
}

int HashTable::RemoveKey(const char16_t* key) {
    return RemoveFirst(key, nullptr);
}

int HashTable::RemoveKey(const char16_t* key, int32_t id) {
    const auto value = static_cast<uint32_t>(id);
    return RemoveFirst(key, &value);
}

int HashTable::RemoveFirst(const char16_t* key, const uint32_t* value) {
    if (!buckets_ || !key) {
        return 0;
    }
    const uint32_t hash = FullHash(key);
    CAssoc** link = &buckets_[hash % size_];
    while (*link && !(IsEqual(**link, key, hash) && (!value || (*link)->value == *value))) {
        link = &(*link)->next;
    }
    CAssoc* entry = *link;
    if (!entry) {
        return 0;
    }
    *link = entry->next;
    FreeAssoc(entry);
    return 1;
}

void* HashTable::GetStartPosition() const {
    return count_ > 0 ? StartPosition() : nullptr;
}

void HashTable::GetNextAssoc(void*& pos, const char16_t*& key, uint32_t& value) const {
    const CAssoc* entry = pos == StartPosition() ? FirstFrom(0) : static_cast<const CAssoc*>(pos);
    pos = nullptr;
    key = nullptr;
    value = 0;
    if (entry) {
        pos = entry->next ? entry->next : FirstFrom(entry->bucket + 1);
        key = entry->key;
        value = entry->value;
    }
}

// The head of the first chain that is not empty, from `bucket` on; null for none.
HashTable::CAssoc* HashTable::FirstFrom(uint32_t bucket) const {
    while (buckets_ && bucket < size_) {
        if (buckets_[bucket]) {
            return buckets_[bucket];
        }
        ++bucket;
    }
    return nullptr;
}

HashTable::CAssoc* HashTable::NewAssoc() {
    if (!freeList_) {
        constexpr std::size_t kBytes = kBlockEntries * sizeof(CAssoc);
        auto* entries = static_cast<CAssoc*>(GetNewBlock(static_cast<int>(kBytes)));
        if (!entries) {
            return nullptr;
        }
        std::memset(entries, 0, kBytes);
        for (uint32_t i = 0; i < kBlockEntries; ++i) {
            entries[i].next = freeList_;
            freeList_ = &entries[i];
        }
    }
    CAssoc* entry = freeList_;
    freeList_ = entry->next;
    ++count_;
    *entry = {};
    return entry;
}

HashTable::CAssoc* HashTable::NewAssoc(const char16_t* key, uint32_t value) {
    CAssoc* entry = NewAssoc();
    if (!entry) {
        return nullptr;
    }
    const std::size_t length = chars::Length(key) + 1;
    entry->key = lq::AllocateArray<char16_t>(length);
    if (!entry->key) {
        FreeAssoc(entry);
        return nullptr;
    }
    std::memcpy(entry->key, key, length * sizeof(char16_t));
    entry->value = value;
    return entry;
}

void HashTable::FreeAssoc(CAssoc* entry) {
    lq::Release(entry->key);
    entry->key = nullptr;
    entry->next = freeList_;
    freeList_ = entry;
    --count_;
}

bool HashTable::Check() const {
    const auto blockCount = lq::containers::HashTableAccess::BlockCount(*this);
    const std::size_t total = std::size_t{kBlockEntries} * blockCount;
    std::size_t chained = 0;
    for (uint32_t bucket = 0; buckets_ && bucket < size_; ++bucket) {
        for (const CAssoc* entry = buckets_[bucket]; entry; entry = entry->next) {
            if (++chained > total || entry->bucket != bucket || HashIndex(entry->key) != bucket ||
                entry->hash != FullHash(entry->key)) {
                return false;
            }
        }
    }
    std::size_t free = 0;
    for (const CAssoc* entry = freeList_; entry && free <= total; entry = entry->next) {
        ++free;
    }
    return chained == static_cast<std::size_t>(count_) && chained + free == total;
}
