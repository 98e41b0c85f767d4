// The entries of a hash table: their search, insertion and removal, and the blocks that they lie
// in. hash_directory.cpp finds them by their keys, hash_chains.cpp puts them in order.
#include "lq_data/hash_table.h"

#include <cstring>

#include "lq_data/detail/chars.h"

LQ_IMPLEMENT_DYNAMIC(CMemBlock, CObject, &CMemBlock::CreateObject)
LQ_IMPLEMENT_DYNAMIC(HashTable, CMemBlock, &HashTable::CreateObject)

namespace {

namespace chars = lq::chars;

constexpr unsigned int kDefaultSize = 233;
constexpr int32_t kNotFound = -1;

}  // namespace

CMemBlock::~CMemBlock() {
    DeleteBlocks();
}

CObject* CMemBlock::CreateObject() {
    return new CMemBlock;
}

void* CMemBlock::GetNewBlock(int size) {
    if (size < 0) {
        return nullptr;
    }
    auto* block = static_cast<BLOCK*>(lq::Allocate(sizeof(BLOCK) + static_cast<std::size_t>(size)));
    if (!block) {
        return nullptr;
    }
    block->next = blocks_;
    blocks_ = block;
    return block + 1;
}

void CMemBlock::DeleteBlocks() {
    while (blocks_) {
        BLOCK* block = blocks_;
        blocks_ = block->next;
        lq::Release(block);
    }
}

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
    buckets_ = nullptr;
    size_ = size == 0 ? 1 : size;
    MakeChains();
}

void HashTable::RemoveAll() {
    const auto releaseKeys = [](CAssoc* entry) {
        for (; entry; entry = entry->next) {
            lq::Release(entry->key);
        }
    };
    releaseKeys(unchained_);
    for (uint32_t i = 0; buckets_ && i < size_; ++i) {
        releaseKeys(buckets_[i]);
    }
    lq::Release(buckets_);
    buckets_ = nullptr;
    unchained_ = nullptr;
    count_ = 0;
    freeList_ = nullptr;
    DropDirectory();
    hasDirectory_ = true;
    DeleteBlocks();
}

bool HashTable::IsEqual(const char16_t* a, const char16_t* b) const {
    return caseSensitive_ ? chars::Equal(a, b) : chars::EqualNoCase(a, b);
}

HashTable::CAssoc* HashTable::GetAssocAt(const char16_t* key, unsigned int& bucket) const {
    if (unchained_) {
        MakeChains();  // the entry's chain is there to be walked
    }
    const KEY wanted = KeyOf(key);
    bucket = HashIndex(wanted);
    return Find(wanted);
}

int HashTable::Lookup(const char16_t* key, uint32_t& value) const {
    const CAssoc* entry = Find(key);
    if (!entry) {
        return 0;
    }
    value = entry->value;
    return 1;
}

int32_t HashTable::GetID(const char16_t* key) const {
    const CAssoc* entry = Find(key);
    return entry ? static_cast<int32_t>(entry->value) : kNotFound;
}

int32_t HashTable::GetPos(const char16_t* key, void*& pos) const {
    CAssoc* entry = Find(key);
    pos = entry;
    return entry ? static_cast<int32_t>(entry->value) : kNotFound;
}

int32_t HashTable::GetNext(const char16_t* key, void*& pos) const {
    if (!pos || !key) {
        pos = nullptr;
        return kNotFound;
    }
    const CAssoc* at = static_cast<CAssoc*>(pos);
    CAssoc* entry = hasDirectory_ && IsEqual(at->key, key) ? at->older : FindBehind(*at, key);
    pos = entry;
    return entry ? static_cast<int32_t>(entry->value) : kNotFound;
}

uint32_t& HashTable::operator[](const char16_t* text) {
    const KEY key = KeyOf(text);
    CAssoc* entry = Find(key);
    if (!entry) {
        entry = Enter(key, 0, true);
    }
    if (!entry) {
        noEntry_ = 0;
        return noEntry_;
    }
    return entry->value;
}

const char16_t* HashTable::Insert(const char16_t* text, int32_t id, int allowDuplicate) {
    const CAssoc* entry = Enter(KeyOf(text), static_cast<uint32_t>(id), allowDuplicate != 0);
    return entry ? entry->key : nullptr;
}

// The new entry; null when memory is short, or the key is there and `mayRepeat` is false. Room in
// the directory is made first, since growing moves the slots.
HashTable::CAssoc* HashTable::Enter(const KEY& key, uint32_t value, bool mayRepeat) {
    if (!key.text || !ReserveSlot()) {
        return nullptr;
    }
    uint32_t slot = 0;
    bool isKnown;
    if (hasDirectory_) {
        slot = SlotOf(key);
        isKnown = IsTaken(slot);
    } else {
        isKnown = Find(key) != nullptr;
    }
    const bool canEnter = (mayRepeat || !isKnown) && (hasDirectory_ || MakeChains());
    CAssoc* entry = canEnter ? TakeEntry(key, value) : nullptr;
    if (!entry) {
        return nullptr;
    }
    Chain(entry);
    if (hasDirectory_) {
        EnterInDirectory(slot, entry);
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
    entry->hash = key.hash;
    return entry;
}

void HashTable::ReturnEntry(CAssoc* entry) {
    lq::Release(entry->key);
    entry->key = nullptr;
    entry->next = freeList_;
    freeList_ = entry;
    --count_;
}

// Called before entries are chained by hand. The directory would not know of those, so it is given
// up, and entries are found along their chains. False when memory is short for the chains.
bool HashTable::LeaveDirectory() {
    const bool isChained = !unchained_ || MakeChains();
    DropDirectory();
    return isChained;
}

HashTable::CAssoc* HashTable::NewAssoc() {
    return LeaveDirectory() ? TakeEntry() : nullptr;
}

HashTable::CAssoc* HashTable::NewAssoc(const char16_t* key, uint32_t value) {
    return LeaveDirectory() ? TakeEntry(KeyOf(key), value) : nullptr;
}

void HashTable::FreeAssoc(CAssoc* entry) {
    LeaveDirectory();
    ReturnEntry(entry);
}
