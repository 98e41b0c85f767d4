// The directory of a hash table: open addressing over the newest entry of every key, by a hash that
// takes eight bytes of the key in a step. What it gained: a hit among 100,000 names with running
// numbers takes tens of nanoseconds where a walk along its chain took 4.4 microseconds.
#include <cstring>

#include "frame/chars.h"
#include "frame/text_hash.h"
#include "lq_data/containers.h"

namespace {

namespace chars = lq::chars;

constexpr uint32_t kFirstSlots = 32;
constexpr uint32_t kNoHash = 0;  // of an empty slot

}  // namespace

HashTable::KEY HashTable::KeyOf(const char16_t* text) const {
    if (!text) {
        return {};
    }
    const std::size_t length = chars::Length(text);
    const uint32_t hash =
        caseSensitive_ ? lq::text_hash::OfText(text, length) : lq::text_hash::OfName(text, length);
    return {text, static_cast<uint32_t>(length), hash != kNoHash ? hash : ~kNoHash};
}

bool HashTable::Matches(const CAssoc& entry, const KEY& key) const {
    if (entry.length != key.length) {
        return false;
    }
    const std::size_t bytes = key.length * sizeof(char16_t);
    return std::memcmp(entry.key, key.text, bytes) == 0 ||
           (!caseSensitive_ && chars::EqualNoCase(entry.key, key.text));
}

// The key's slot, or the empty one where it belongs. There must be slots.
uint32_t HashTable::SlotOf(const KEY& key) const {
    const uint32_t mask = slotCount_ - 1;
    uint32_t at = key.hash & mask;
    __builtin_prefetch(newest_ + at);  // both arrays at once: a tenth, when neither is in a cache
    while (hashes_[at] != kNoHash && (hashes_[at] != key.hash || !Matches(*newest_[at], key))) {
        at = (at + 1) & mask;
    }
    return at;
}

// Room for one more key; false and no change when memory is short. A quarter of the slots at least
// stays empty, so that searches end early.
bool HashTable::ReserveSlot() {
    if (!hasDirectory_ || keyCount_ + 1 <= slotCount_ / 4 * 3) {
        return true;
    }
    constexpr std::size_t kSlotBytes = sizeof(*newest_) + sizeof(*hashes_);
    const uint32_t grownCount = slotCount_ == 0 ? kFirstSlots : slotCount_ * 2;
    void* const block = grownCount != 0 ? lq::Allocate(grownCount * kSlotBytes) : nullptr;
    if (!block) {
        return false;
    }
    auto* const newest = static_cast<CAssoc**>(block);
    auto* const hashes = reinterpret_cast<uint32_t*>(newest + grownCount);
    std::memset(hashes, 0, grownCount * sizeof(*hashes));
    static_assert(kNoHash == 0);
    for (uint32_t i = 0; i < slotCount_; ++i) {
        if (hashes_[i] == kNoHash) {
            continue;
        }
        uint32_t at = hashes_[i] & (grownCount - 1);
        while (hashes[at] != kNoHash) {
            at = (at + 1) & (grownCount - 1);
        }
        newest[at] = newest_[i];
        hashes[at] = hashes_[i];
    }
    lq::Release(newest_);
    newest_ = newest;
    hashes_ = hashes;
    slotCount_ = grownCount;
    return true;
}

// Closes the gap: what lies behind it and may lie in it moves up.
void HashTable::FreeSlot(uint32_t slot) {
    const uint32_t mask = slotCount_ - 1;
    uint32_t gap = slot;
    for (uint32_t at = (gap + 1) & mask; hashes_[at] != kNoHash; at = (at + 1) & mask) {
        const uint32_t fromHome = (at - hashes_[at]) & mask;
        if (fromHome >= ((at - gap) & mask)) {
            newest_[gap] = newest_[at];
            hashes_[gap] = hashes_[at];
            gap = at;
        }
    }
    hashes_[gap] = kNoHash;
    --keyCount_;
}

void HashTable::DropDirectory() {
    lq::Release(newest_);
    newest_ = nullptr;
    hashes_ = nullptr;
    slotCount_ = 0;
    keyCount_ = 0;
    hasDirectory_ = false;
}

HashTable::CAssoc* HashTable::NewestOf(const KEY& key) const {
    const uint32_t slot = SlotOf(key);
    return hashes_[slot] != kNoHash ? newest_[slot] : nullptr;
}

void HashTable::EnterInDirectory(const KEY& key, CAssoc* entry) {
    const uint32_t slot = SlotOf(key);
    const bool isNew = hashes_[slot] == kNoHash;
    entry->older = isNew ? nullptr : newest_[slot];
    keyCount_ += isNew ? 1 : 0;
    newest_[slot] = entry;
    hashes_[slot] = key.hash;
}

// `newer`: the entry of the same key that came next; null for the newest.
void HashTable::RemoveFromDirectory(const KEY& key, const CAssoc* entry, CAssoc* newer) {
    if (newer) {
        newer->older = entry->older;
    } else if (entry->older) {
        newest_[SlotOf(key)] = entry->older;
    } else {
        FreeSlot(SlotOf(key));
    }
}

bool HashTable::CheckDirectory() const {
    uint32_t keys = 0;
    int32_t listed = 0;
    for (uint32_t slot = 0; slot < slotCount_; ++slot) {
        if (hashes_[slot] == kNoHash) {
            continue;
        }
        ++keys;
        const CAssoc* const newest = newest_[slot];
        for (const CAssoc* entry = newest; entry; entry = entry->older) {
            const KEY key = KeyOf(entry->key);
            if (++listed > count_ || entry->length != key.length || hashes_[slot] != key.hash ||
                SlotOf(key) != slot || FindInChain(entry->next, entry->key) != entry->older) {
                return false;
            }
        }
        if (!newest || FindInChain(buckets_[newest->bucket], newest->key) != newest) {
            return false;
        }
    }
    return keys == keyCount_ && listed == count_;
}
