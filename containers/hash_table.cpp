// Chains of entries, the newest in front. The chains order the iteration; hash_directory.cpp finds
// entries without them.
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
    DropDirectory();
    hasDirectory_ = true;
    DeleteBlocks();
}

uint32_t HashTable::FullHash(const KEY& key) const {
    if (!key.text || key.length > kMaxHashedLength) {
        return 0;
    }
    return caseSensitive_ ? Hash(key.text, [](char16_t c) { return c; })
                          : Hash(key.text, chars::ToUpper);
}

bool HashTable::IsEqual(const char16_t* a, const char16_t* b) const {
    return caseSensitive_ ? chars::Equal(a, b) : chars::EqualNoCase(a, b);
}

HashTable::CAssoc* HashTable::FindInChain(CAssoc* entry, const char16_t* key) const {
    while (entry && !IsEqual(entry->key, key)) {
        entry = entry->next;
    }
    return entry;
}

HashTable::CAssoc* HashTable::GetAssocAt(const char16_t* key, unsigned int& bucket) const {
    const KEY wanted = KeyOf(key);
    bucket = HashIndex(wanted);
    return Find(wanted);
}

HashTable::CAssoc* HashTable::Find(const KEY& key) const {
    if (!key.text || count_ == 0) {
        return nullptr;
    }
    return hasDirectory_ ? NewestOf(key) : FindInChain(buckets_[HashIndex(key)], key.text);
}

int HashTable::Lookup(const char16_t* key, uint32_t& value) const {
    const CAssoc* entry = Find(KeyOf(key));
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
    CAssoc* entry = Find(KeyOf(key));
    pos = entry;
    return entry ? static_cast<int32_t>(entry->value) : kNotFound;
}

int32_t HashTable::GetNext(const char16_t* key, void*& pos) const {
    if (!pos || !key) {
        pos = nullptr;
        return kNotFound;
    }
    const CAssoc* at = static_cast<CAssoc*>(pos);
    CAssoc* entry = hasDirectory_ && IsEqual(at->key, key) ? at->older : FindInChain(at->next, key);
    pos = entry;
    return entry ? static_cast<int32_t>(entry->value) : kNotFound;
}

uint32_t& HashTable::operator[](const char16_t* text) {
    const KEY key = KeyOf(text);
    CAssoc* entry = Find(key);
    if (!entry) {
        entry = Enter(key, 0);
    }
    if (!entry) {
        noEntry_ = 0;
        return noEntry_;
    }
    return entry->value;
}

const char16_t* HashTable::Insert(const char16_t* text, int32_t id, int allowDuplicate) {
    const KEY key = KeyOf(text);
    if (!allowDuplicate && Find(key)) {
        return nullptr;
    }
    const CAssoc* entry = Enter(key, static_cast<uint32_t>(id));
    return entry ? entry->key : nullptr;
}

HashTable::CAssoc* HashTable::Enter(const KEY& key, uint32_t value) {
    if (!key.text) {
        return nullptr;
    }
    if (!buckets_) {
        InitHashTable(size_);
    }
    CAssoc* entry = buckets_ && ReserveSlot() ? TakeEntry(key, value) : nullptr;
    if (!entry) {
        return nullptr;
    }
    entry->bucket = HashIndex(key);
    entry->next = buckets_[entry->bucket];
    buckets_[entry->bucket] = entry;
    if (hasDirectory_) {
        EnterInDirectory(key, entry);
    }
    return entry;
}

int HashTable::RemoveKey(const char16_t* key) {
    return RemoveFirst(key, nullptr);
}

int HashTable::RemoveKey(const char16_t* key, int32_t id) {
    const auto value = static_cast<uint32_t>(id);
    return RemoveFirst(key, &value);
}

int HashTable::RemoveFirst(const char16_t* text, const uint32_t* value) {
    const KEY key = KeyOf(text);
    CAssoc* newer = nullptr;
    CAssoc* entry = Find(key);
    const auto following = [&](CAssoc* e) {
        return hasDirectory_ ? e->older : FindInChain(e->next, text);
    };
    while (entry && value && entry->value != *value) {
        newer = entry;
        entry = following(entry);
    }
    if (!entry) {
        return 0;
    }
    Unchain(entry);
    if (hasDirectory_) {
        RemoveFromDirectory(key, entry, newer);
    }
    ReturnEntry(entry);
    return 1;
}

void HashTable::Unchain(CAssoc* entry) {
    CAssoc** link = &buckets_[entry->bucket];
    while (*link != entry) {
        link = &(*link)->next;
    }
    *link = entry->next;
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

HashTable::CAssoc* HashTable::TakeEntry() {
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

HashTable::CAssoc* HashTable::TakeEntry(const KEY& key, uint32_t value) {
    CAssoc* entry = TakeEntry();
    if (!entry) {
        return nullptr;
    }
    const std::size_t size = std::size_t{key.length} + 1;
    entry->key = lq::AllocateArray<char16_t>(size);
    if (!entry->key) {
        ReturnEntry(entry);
        return nullptr;
    }
    std::memcpy(entry->key, key.text, size * sizeof(char16_t));
    entry->value = value;
    entry->length = key.length;
    return entry;
}

void HashTable::ReturnEntry(CAssoc* entry) {
    lq::Release(entry->key);
    entry->key = nullptr;
    entry->next = freeList_;
    freeList_ = entry;
    --count_;
}

HashTable::CAssoc* HashTable::NewAssoc() {
    DropDirectory();
    return TakeEntry();
}

HashTable::CAssoc* HashTable::NewAssoc(const char16_t* key, uint32_t value) {
    DropDirectory();
    return TakeEntry(KeyOf(key), value);
}

void HashTable::FreeAssoc(CAssoc* entry) {
    DropDirectory();
    ReturnEntry(entry);
}

bool HashTable::Check() const {
    const auto blockCount = lq::containers::HashTableAccess::BlockCount(*this);
    const std::size_t total = std::size_t{kBlockEntries} * blockCount;
    std::size_t chained = 0;
    for (uint32_t bucket = 0; buckets_ && bucket < size_; ++bucket) {
        for (const CAssoc* entry = buckets_[bucket]; entry; entry = entry->next) {
            if (++chained > total || entry->bucket != bucket ||
                HashIndex(KeyOf(entry->key)) != bucket) {
                return false;
            }
        }
    }
    std::size_t free = 0;
    for (const CAssoc* entry = freeList_; entry && free <= total; entry = entry->next) {
        ++free;
    }
    return chained == static_cast<std::size_t>(count_) && chained + free == total &&
           (!hasDirectory_ || CheckDirectory());
}
