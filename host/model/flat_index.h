// An open-addressing index of small values. It stores the values only: hashing and comparing are
// the user's, who keeps what the values stand for. Nothing is ever removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "frame/chars.h"

namespace lq::host {

// `Value` is trivial; Value{} marks a free slot and cannot be stored.
template <typename Value>
class FlatIndex {
  public:
    // The first value of that hash for which `same` holds, or Value{}.
    template <typename Same>
    Value Find(uint32_t hash, Same same) const {
        if (slots_.empty()) {
            return Value{};
        }
        for (std::size_t i = hash & Mask();; i = (i + 1) & Mask()) {
            if (slots_[i] == Value{} || same(slots_[i])) {
                return slots_[i];
            }
        }
    }

    // Values of one hash are found in the order of their entry. `hashOf` gives the hash of any
    // value stored. Throws std::bad_alloc; the index is then as before.
    template <typename HashOf>
    void Add(Value value, HashOf hashOf) {
        if (slots_.size() * 3 <= (count_ + 1) * 4) {
            Grow(hashOf);
        }
        Place(slots_, value, hashOf(value));
        ++count_;
    }

  private:
    static constexpr std::size_t kFirstSize = 64;  // a power of two, as every later size

    std::size_t Mask() const { return slots_.size() - 1; }

    static void Place(std::vector<Value>& slots, Value value, uint32_t hash) {
        const std::size_t mask = slots.size() - 1;
        std::size_t i = hash & mask;
        while (slots[i] != Value{}) {
            i = (i + 1) & mask;
        }
        slots[i] = value;
    }

    // The old slots are walked from behind a free one, so that equal hashes keep their order.
    template <typename HashOf>
    void Grow(HashOf hashOf) {
        std::vector<Value> larger(slots_.empty() ? kFirstSize : slots_.size() * 2);
        std::size_t start = 0;
        while (start < slots_.size() && slots_[start] != Value{}) {
            ++start;
        }
        for (std::size_t n = 0; n < slots_.size(); ++n) {
            const Value value = slots_[(start + n) & Mask()];
            if (value != Value{}) {
                Place(larger, value, hashOf(value));
            }
        }
        slots_.swap(larger);
    }

    std::vector<Value> slots_;
    std::size_t count_ = 0;
};

// The hash of a text (FNV-1a by 16-bit units), and of its upper-case form.
inline uint32_t HashOfText(std::u16string_view text) {
    uint32_t hash = 2166136261u;
    for (const char16_t c : text) {
        hash = (hash ^ c) * 16777619u;
    }
    return hash ^ (hash >> 15);
}

inline uint32_t HashOfName(std::u16string_view name) {
    uint32_t hash = 2166136261u;
    for (const char16_t c : name) {
        hash = (hash ^ chars::ToUpper(c)) * 16777619u;
    }
    return hash ^ (hash >> 15);
}

}  // namespace lq::host
