// The directory of a hash table, which finds the entry of a key without a walk along its chain.
//
// The chains are ordered by a hash that the interface fixes, and under which names with running
// numbers crowd in few buckets. So the newest entry of every key is entered a second time, in an
// array of slots, by another hash (frame/text_hash.h): open addressing with linear probing (Knuth,
// The Art of Computer Programming, volume 3, section 6.4, algorithm L). A key is looked for from
// the slot of its hash on, up to the first empty slot.
//
// Following a slot to its entry and the entry to its key would mean two accesses to distant memory
// for each slot that is passed. So each slot has a tag beside it, 16 bits of the hash, and a search
// goes along the array of tags, which is small enough for a cache, and follows only slots with the
// tag of its key. Eight tags are compared in one step without a branch for each, as in the hash
// tables of Kulukundis (Designing a Fast, Efficient, Cache-friendly Hash Table, Step by Step;
// CppCon 2017): at which of several slots a search ends is nothing that the processor could
// predict.
#include <bit>
#include <cstring>

#include "containers/slot_step.h"
#include "lq_data/detail/chars.h"
#include "lq_data/detail/text_hash.h"
#include "lq_data/hash_table.h"

namespace {

namespace chars = lq::chars;

constexpr uint32_t kFirstSlots = 32;
constexpr uint32_t kStep = lq::containers::kSlotStep;
constexpr uint16_t kNoTag = lq::containers::kNoTag;

// The upper half of the hash. Slots are chosen by the lower bits, so that the tag tells keys of one
// slot apart; its bits take part in the choice last, when there are more than 65536 slots.
uint16_t TagOf(uint32_t hash) {
    const auto tag = static_cast<uint16_t>(hash >> 16);
    return tag != kNoTag ? tag : 1;
}

}  // namespace

HashTable::KEY HashTable::KeyOf(const char16_t* text) const {
    if (!text) {
        return {};
    }
    const auto [length, hash] =
        caseSensitive_ ? lq::text_hash::OfText(text) : lq::text_hash::OfName(text);
    return {text, static_cast<uint32_t>(length), hash};
}

// Not inlined: the search then keeps all its values in registers while it passes slots.
[[gnu::noinline]] bool HashTable::Matches(const CAssoc& entry, const KEY& key) const {
    if (entry.hash != key.hash || entry.length != key.length) {
        return false;
    }
    const std::size_t bytes = key.length * sizeof(char16_t);
    return std::memcmp(entry.key, key.text, bytes) == 0 ||
           (!caseSensitive_ && chars::EqualNoCase(entry.key, key.text));
}

// The slot of the key's newest entry; when the key is not there, the empty slot where it belongs.
// The directory must have slots.
uint32_t HashTable::SlotOf(const KEY& key) const {
    const uint32_t mask = slotCount_ - 1;
    const uint16_t tag = TagOf(key.hash);
    uint32_t at = key.hash & mask;
    for (;; at = (at + kStep) & mask) {
        for (uint32_t ends = lq::containers::EndsInStep(tags_ + at, tag); ends != 0;
             ends &= ends - 1) {
            const uint32_t slot = (at + static_cast<uint32_t>(std::countr_zero(ends))) & mask;
            if (!IsTaken(slot) || Matches(*newest_[slot], key)) {
                return slot;
            }
        }
    }
}

bool HashTable::IsTaken(uint32_t slot) const {
    return tags_[slot] != kNoTag;
}

// A step reads kStep tags from any slot on. So that it need not go back to the first slot on its
// way, the first kStep tags are kept a second time behind the last one.
void HashTable::SetSlot(uint32_t slot, uint16_t tag, CAssoc* entry) {
    newest_[slot] = entry;
    tags_[slot] = tag;
    if (slot < kStep) {
        tags_[slotCount_ + slot] = tag;
    }
}

// Room for one more key; false and no change when memory is short. A quarter of the slots at least
// stays empty, so that searches end early.
bool HashTable::ReserveSlot() {
    if (!hasDirectory_ || keyCount_ + 1 <= slotCount_ / 4 * 3) {
        return true;
    }
    const uint32_t count = slotCount_ == 0 ? kFirstSlots : slotCount_ * 2;
    const std::size_t tagBytes = (std::size_t{count} + kStep) * sizeof(*tags_);
    void* const block = count != 0 ? lq::Allocate(count * sizeof(*newest_) + tagBytes) : nullptr;
    if (!block) {
        return false;
    }
    CAssoc** const old = newest_;
    const uint16_t* const oldTags = tags_;
    const uint32_t oldCount = slotCount_;
    newest_ = static_cast<CAssoc**>(block);
    tags_ = reinterpret_cast<uint16_t*>(newest_ + count);
    slotCount_ = count;
    std::memset(tags_, 0, tagBytes);
    static_assert(kNoTag == 0);
    constexpr uint32_t kAhead = 16;  // entries are fetched early: each lies elsewhere in memory
    for (uint32_t i = 0; i < oldCount; ++i) {
        if (i + kAhead < oldCount && oldTags[i + kAhead] != kNoTag) {
            __builtin_prefetch(old[i + kAhead]);
        }
        if (oldTags[i] != kNoTag) {
            SetSlot(FreeSlotFor(old[i]->hash), oldTags[i], old[i]);
        }
    }
    lq::Release(old);
    return true;
}

// The empty slot where a key of that hash belongs that is not there.
uint32_t HashTable::FreeSlotFor(uint32_t hash) const {
    uint32_t slot = hash & (slotCount_ - 1);
    while (IsTaken(slot)) {
        slot = (slot + 1) & (slotCount_ - 1);
    }
    return slot;
}

// Empties a slot. A search must not end at the gap in front of the key that it looks for, so the
// slots behind it, up to the next empty one, are gone through: an entry whose own slot does not lie
// behind the gap moves into it, and leaves the next gap (Knuth, as above, algorithm R).
void HashTable::EmptySlot(uint32_t slot) {
    const uint32_t mask = slotCount_ - 1;
    uint32_t gap = slot;
    for (uint32_t at = (gap + 1) & mask; IsTaken(at); at = (at + 1) & mask) {
        const uint32_t fromHome = (at - newest_[at]->hash) & mask;
        if (fromHome >= ((at - gap) & mask)) {
            SetSlot(gap, tags_[at], newest_[at]);
            gap = at;
        }
    }
    SetSlot(gap, kNoTag, nullptr);
    --keyCount_;
}

void HashTable::DropDirectory() {
    lq::Release(newest_);
    newest_ = nullptr;
    tags_ = nullptr;
    slotCount_ = 0;
    keyCount_ = 0;
    hasDirectory_ = false;
}

HashTable::CAssoc* HashTable::Find(const KEY& key) const {
    if (!key.text || count_ == 0) {
        return nullptr;
    }
    if (!hasDirectory_) {
        return FindInChain(buckets_ ? buckets_[HashIndex(key)] : unchained_, key.text);
    }
    const uint32_t slot = SlotOf(key);
    return IsTaken(slot) ? newest_[slot] : nullptr;
}

// Flattened: hash and search become one function without calls.
[[gnu::flatten]] HashTable::CAssoc* HashTable::Find(const char16_t* text) const {
    return Find(KeyOf(text));
}

// Makes the entry the newest of its key, for which SlotOf gives `slot`.
void HashTable::EnterInDirectory(uint32_t slot, CAssoc* entry) {
    const bool isNew = !IsTaken(slot);
    entry->older = isNew ? nullptr : newest_[slot];
    keyCount_ += isNew ? 1 : 0;
    SetSlot(slot, TagOf(entry->hash), entry);
}

// `newer`: the entry of the same key that came next; null for the newest.
void HashTable::RemoveFromDirectory(const KEY& key, const CAssoc* entry, CAssoc* newer) {
    if (newer) {
        newer->older = entry->older;
    } else if (entry->older) {
        newest_[SlotOf(key)] = entry->older;
    } else {
        EmptySlot(SlotOf(key));
    }
}

bool HashTable::CheckDirectory() const {
    uint32_t keys = 0;
    int32_t listed = 0;
    for (uint32_t slot = 0; slot < slotCount_; ++slot) {
        if (slot < kStep && tags_[slot] != tags_[slotCount_ + slot]) {
            return false;
        }
        if (!IsTaken(slot)) {
            continue;
        }
        ++keys;
        const CAssoc* const newest = newest_[slot];
        for (const CAssoc* entry = newest; entry; entry = entry->older) {
            const KEY key = KeyOf(entry->key);
            if (++listed > count_ || entry->length != key.length || entry->hash != key.hash ||
                tags_[slot] != TagOf(key.hash) || SlotOf(key) != slot ||
                FindInChain(entry->next, entry->key) != entry->older) {
                return false;
            }
        }
        CAssoc* const head = buckets_ && newest ? buckets_[newest->bucket] : unchained_;
        if (!newest || FindInChain(head, newest->key) != newest) {
            return false;
        }
    }
    return keys == keyCount_ && listed == count_;
}
