#include "cgtab/line_index.h"

#include <algorithm>

namespace lq::cgtab {

LineIndex::~LineIndex() {
    for (const Lines& list : lists_) {
        lq::Release(list.at);
    }
    lq::Release(slots_);
}

void LineIndex::Clear() {
    for (const Lines& list : lists_) {
        lq::Release(list.at);
    }
    lists_.Clear();
    if (capacity_ > kFirstCapacity) {
        lq::Release(slots_);
        slots_ = nullptr;
        capacity_ = 0;
    }
    std::fill_n(slots_, capacity_, Slot{0, kFree});
    texts_ = lines_ = 0;
}

// The place of a text that is not there yet.
LineIndex::Slot* LineIndex::FreeSlot(uint32_t hash) {
    const uint32_t mask = capacity_ - 1;
    uint32_t at = hash & mask;
    while (slots_[at].at != kFree) {
        at = (at + 1) & mask;
    }
    return &slots_[at];
}

bool LineIndex::Grow() {
    const uint32_t capacity = capacity_ != 0 ? 2 * capacity_ : kFirstCapacity;
    auto* const slots = lq::AllocateArray<Slot>(capacity);
    if (!slots) {
        return false;
    }
    std::fill_n(slots, capacity, Slot{0, kFree});
    Slot* const before = slots_;
    const uint32_t count = capacity_;
    slots_ = slots;
    capacity_ = capacity;
    for (uint32_t i = 0; i < count; ++i) {
        if (before[i].at != kFree) {
            *FreeSlot(before[i].hash) = before[i];
        }
    }
    lq::Release(before);
    return true;
}

bool LineIndex::Insert(uint32_t hash, int32_t pos) {
    if (uint64_t{texts_ + 1} * 4 > uint64_t{capacity_} * 3 && !Grow()) {
        return false;
    }
    *FreeSlot(hash) = {hash, pos};
    ++texts_;
    ++lines_;
    return true;
}

// A text's second line makes a list of them.
bool LineIndex::Append(Slot& slot, int32_t pos) {
    if (slot.at >= 0) {
        Lines list = {};
        if (!Enlarge(list.at, 0, list.capacity, 2)) {
            return false;
        }
        list.at[list.count++] = slot.at;
        if (!lists_.Append(list)) {
            lq::Release(list.at);
            return false;
        }
        slot.at = ~static_cast<int32_t>(lists_.Count() - 1);
    }
    Lines& list = lists_[~static_cast<uint32_t>(slot.at)];
    if (list.count == list.capacity && !Enlarge(list.at, list.count, list.capacity, 0)) {
        return false;
    }
    list.at[list.count++] = pos;
    ++lines_;
    return true;
}

int32_t LineIndex::LastIn(const Slot& slot, int32_t start, int32_t end) const {
    int32_t pos = slot.at;
    if (pos < 0) {
        const Lines& list = LinesOf(slot);
        const int32_t* const behind = std::lower_bound(list.at, list.at + list.count, end);
        pos = behind == list.at ? -1 : behind[-1];
    }
    return pos >= start && pos < end ? pos : -1;
}

int32_t LineIndex::LineAt(uint32_t slot, uint32_t n) const {
    const int32_t at = slots_[slot].at;
    if (at >= 0) {
        return n == 0 ? at : -1;
    }
    return at != kFree && n < LinesOf(slots_[slot]).count ? LinesOf(slots_[slot]).at[n] : -1;
}

}  // namespace lq::cgtab
