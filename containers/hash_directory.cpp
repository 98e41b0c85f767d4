// The directory of a hash table: open addressing over the newest entry of every key, by a hash that
// takes eight bytes of the key in a step. What it gained: a hit among 100,000 names with running
// numbers takes tens of nanoseconds where a walk along its chain took 4.4 microseconds.
//
// The hash multiplies by 2^64 over the golden ratio (Knuth, The Art of Computer Programming, 6.4).
#include <cstring>

#include "frame/chars.h"
#include "lq_data/containers.h"

namespace {

namespace chars = lq::chars;

constexpr uint32_t kFirstSlots = 32;
constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;
constexpr std::size_t kStep = sizeof(uint64_t) / sizeof(char16_t);

// Four characters, at the end fewer and zeros.
uint64_t Load(const char16_t* text, std::size_t count) {
    uint64_t word = 0;
    std::memcpy(&word, text, count * sizeof(char16_t));
    return word;
}

constexpr uint64_t Everywhere(uint64_t character) {
    return character * 0x0001000100010001u;
}

// The upper-case forms of four characters; all four at once when they are ASCII.
uint64_t ToUpper(uint64_t word) {
    if ((word & Everywhere(0xFF80)) == 0) {
        const uint64_t fromA = word + Everywhere(0x8000 - u'a');
        const uint64_t behindZ = word + Everywhere(0x8000 - u'z' - 1);
        return word - ((fromA & ~behindZ & Everywhere(0x8000)) >> 10);  // 0x20 each
    }
    char16_t characters[kStep];
    std::memcpy(characters, &word, sizeof word);
    for (char16_t& c : characters) {
        c = chars::ToUpper(c);
    }
    return Load(characters, kStep);
}

uint64_t Mix(uint64_t hash, uint64_t word) {
    hash = (hash ^ word) * kMultiplier;
    return hash ^ hash >> 32;
}

template <typename Convert>
uint32_t MixedHash(const char16_t* text, std::size_t length, Convert convert) {
    uint64_t hash = length;
    for (; length > kStep; text += kStep, length -= kStep) {
        hash = Mix(hash, convert(Load(text, kStep)));
    }
    return static_cast<uint32_t>(Mix(hash, convert(Load(text, length))));
}

}  // namespace

HashTable::KEY HashTable::KeyOf(const char16_t* text) const {
    if (!text) {
        return {};
    }
    const std::size_t length = chars::Length(text);
    const uint32_t hash = caseSensitive_
                              ? MixedHash(text, length, [](uint64_t word) { return word; })
                              : MixedHash(text, length, ToUpper);
    return {text, static_cast<uint32_t>(length), hash};
}

bool HashTable::Matches(const SLOT& slot, const KEY& key) const {
    const CAssoc* const entry = slot.entry;
    if (slot.hash != key.hash || entry->length != key.length) {
        return false;
    }
    const std::size_t bytes = key.length * sizeof(char16_t);
    return std::memcmp(entry->key, key.text, bytes) == 0 ||
           (!caseSensitive_ && chars::EqualNoCase(entry->key, key.text));
}

// The key's slot, or the empty one where it belongs. There must be slots.
HashTable::SLOT* HashTable::SlotOf(const KEY& key) const {
    const uint32_t mask = slotCount_ - 1;
    uint32_t at = key.hash & mask;
    while (slots_[at].entry && !Matches(slots_[at], key)) {
        at = (at + 1) & mask;
    }
    return &slots_[at];
}

// Room for one more key; false and no change when memory is short. A quarter of the slots at least
// stays empty, so that searches end early.
bool HashTable::ReserveSlot() {
    if (!hasDirectory_ || keyCount_ + 1 <= slotCount_ / 4 * 3) {
        return true;
    }
    const uint32_t grownCount = slotCount_ == 0 ? kFirstSlots : slotCount_ * 2;
    SLOT* const grown = grownCount != 0 ? lq::AllocateArray<SLOT>(grownCount) : nullptr;
    if (!grown) {
        return false;
    }
    for (uint32_t i = 0; i < grownCount; ++i) {
        grown[i] = {};
    }
    for (uint32_t i = 0; i < slotCount_; ++i) {
        uint32_t at = slots_[i].hash & (grownCount - 1);
        while (slots_[i].entry && grown[at].entry) {
            at = (at + 1) & (grownCount - 1);
        }
        if (slots_[i].entry) {
            grown[at] = slots_[i];
        }
    }
    lq::Release(slots_);
    slots_ = grown;
    slotCount_ = grownCount;
    return true;
}

// Closes the gap: what lies behind it and may lie in it moves up.
void HashTable::FreeSlot(SLOT* slot) {
    const uint32_t mask = slotCount_ - 1;
    auto gap = static_cast<uint32_t>(slot - slots_);
    for (uint32_t at = (gap + 1) & mask; slots_[at].entry; at = (at + 1) & mask) {
        const uint32_t fromHome = (at - slots_[at].hash) & mask;
        if (fromHome >= ((at - gap) & mask)) {
            slots_[gap] = slots_[at];
            gap = at;
        }
    }
    slots_[gap] = {};
    --keyCount_;
}

void HashTable::DropDirectory() {
    lq::Release(slots_);
    slots_ = nullptr;
    slotCount_ = 0;
    keyCount_ = 0;
    hasDirectory_ = false;
}

bool HashTable::CheckDirectory() const {
    uint32_t keys = 0;
    int32_t listed = 0;
    for (uint32_t i = 0; i < slotCount_; ++i) {
        const SLOT& slot = slots_[i];
        keys += slot.entry ? 1 : 0;
        for (const CAssoc* entry = slot.entry; entry; entry = entry->older) {
            const KEY key = KeyOf(entry->key);
            if (++listed > count_ || entry->length != key.length || entry->hash != key.hash ||
                slot.hash != key.hash || SlotOf(key) != &slot ||
                FindInChain(entry->next, entry->key) != entry->older) {
                return false;
            }
        }
        if (slot.entry &&
            FindInChain(buckets_[slot.entry->bucket], slot.entry->key) != slot.entry) {
            return false;
        }
    }
    return keys == keyCount_ && listed == count_;
}
