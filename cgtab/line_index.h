// Where the lines of a table are that have a text: slots of a hash and a position. The texts stay
// in the lines, where the caller compares them.
#pragma once

#include <cstdint>

#include "frame/growing.h"
#include "lq_data/export.h"
#include "lq_data/memory.h"

namespace lq::cgtab {

// A hash table with open addressing and linear probing (Knuth, The Art of Computer Programming,
// volume 3, section 6.4), at most three quarters full. A slot keeps the whole hash, so that growing
// reads no line and a line is read only when its text is almost certainly the one. It holds the
// position of its text's line or, once a text has several, the number of a list of them, ascending.
// Nothing is ever taken out: a table that loses lines drops its index.
//
// Shapes: 8 bytes a slot; a text takes 11 to 22 bytes, one with several lines 8 to 16 more a line.
class LineIndex {
  public:
    struct Slot {
        uint32_t hash;
        int32_t at;  // a position, or ~n for the n-th list, or kFree
    };

    LineIndex() = default;
    LQ_DATA_API ~LineIndex();
    LineIndex(const LineIndex&) = delete;
    LineIndex& operator=(const LineIndex&) = delete;

    // The slot of the text with this hash for one of whose lines `isIts(position)` answers true; or
    // null. It is asked for one line of each text with that hash.
    template <typename IsIts>
    Slot* Find(uint32_t hash, IsIts isIts);
    // As new; keeps the slots when they are few.
    LQ_DATA_API void Clear();
    // Enters the first line of a text. False when memory is short.
    LQ_DATA_API bool Insert(uint32_t hash, int32_t pos);
    // Enters a further line of a text, which lies behind those before. False when memory is short.
    bool Append(Slot& slot, int32_t pos);
    // The last of a text's lines between `start` and `end` (exclusive), or -1.
    int32_t LastIn(const Slot& slot, int32_t start, int32_t end) const;

    uint32_t LineCount() const { return lines_; }
    uint32_t SlotCount() const { return capacity_; }
    // The n-th line of a slot, counted from 0; -1 behind the last.
    int32_t LineAt(uint32_t slot, uint32_t n) const;

    LQ_ALLOCATED

  private:
    static constexpr int32_t kFree = INT32_MIN;
    static constexpr uint32_t kFirstCapacity = 16;

    struct Lines {
        int32_t* at;
        uint32_t count;
        uint32_t capacity;
    };

    const Lines& LinesOf(const Slot& slot) const { return lists_[~static_cast<uint32_t>(slot.at)]; }
    int32_t Last(const Slot& slot) const {
        return slot.at >= 0 ? slot.at : LinesOf(slot).at[LinesOf(slot).count - 1];
    }
    bool Grow();
    Slot* FreeSlot(uint32_t hash);

    Slot* slots_ = nullptr;
    uint32_t capacity_ = 0;  // a power of two, or 0
    uint32_t texts_ = 0;
    uint32_t lines_ = 0;
    Growing<Lines> lists_;
};

template <typename IsIts>
LineIndex::Slot* LineIndex::Find(uint32_t hash, IsIts isIts) {
    if (capacity_ == 0) {
        return nullptr;
    }
    const uint32_t mask = capacity_ - 1;
    for (uint32_t at = hash & mask; slots_[at].at != kFree; at = (at + 1) & mask) {
        if (slots_[at].hash == hash && isIts(Last(slots_[at]))) {
            return &slots_[at];
        }
    }
    return nullptr;
}

}  // namespace lq::cgtab
