// An open-addressing index of small values. It stores the values and their hashes only: hashing and
// comparing are the user's, who keeps what the values stand for. Nothing is ever removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "lq_data/detail/text_hash.h"

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
            const Slot& slot = slots_[i];
            if (slot.value == Value{} || (slot.hash == hash && same(slot.value))) {
                return slot.value;
            }
        }
    }

    // Values of one hash are found in the order of their entry. Throws std::bad_alloc; the index is
    // then as before.
    void Add(Value value, uint32_t hash) {
        AddFirst(value, hash, [](Value) { return false; });
    }

    // The same for the first value that `same` holds for; one that comes later would never be
    // found, and thousands of them make a long way. False for such a one, which is left out.
    template <typename Same>
    bool AddFirst(Value value, uint32_t hash, Same same) {
        if (slots_.size() * 3 <= (count_ + 1) * 4) {
            Grow();
        }
        if (!Place(slots_, {value, hash}, same)) {
            return false;
        }
        ++count_;
        return true;
    }

  private:
    struct Slot {
        Value value;
        uint32_t hash;
    };

    static constexpr std::size_t kFirstSize = 8;  // a power of two, as every later size

    std::size_t Mask() const { return slots_.size() - 1; }

    template <typename Same>
    static bool Place(std::vector<Slot>& slots, const Slot& slot, Same same) {
        const std::size_t mask = slots.size() - 1;
        std::size_t i = slot.hash & mask;
        while (slots[i].value != Value{}) {
            if (slots[i].hash == slot.hash && same(slots[i].value)) {
                return false;
            }
            i = (i + 1) & mask;
        }
        slots[i] = slot;
        return true;
    }

    // The old slots are walked from behind a free one, so that equal hashes keep their order.
    void Grow() {
        std::vector<Slot> larger(slots_.empty() ? kFirstSize : slots_.size() * 2);
        std::size_t start = 0;
        while (start < slots_.size() && slots_[start].value != Value{}) {
            ++start;
        }
        for (std::size_t n = 0; n < slots_.size(); ++n) {
            const Slot& slot = slots_[(start + n) & Mask()];
            if (slot.value != Value{}) {
                Place(larger, slot, [](Value) { return false; });
            }
        }
        slots_.swap(larger);
    }

    std::vector<Slot> slots_;
    std::size_t count_ = 0;
};

// The hash of a text, and one that does not regard case.
inline uint32_t HashOfText(std::u16string_view text) {
    return text_hash::OfText(text.data(), text.size());
}
inline uint32_t HashOfName(std::u16string_view name) {
    return text_hash::OfName(name.data(), name.size());
}

// For the standard library's tables of texts that strangers write.
struct BytesHash {
    std::size_t operator()(std::string_view text) const noexcept {
        return text_hash::OfBytes(text.data(), text.size());
    }
};

}  // namespace lq::host
