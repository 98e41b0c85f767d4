#include "cgtab/line_index.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace lq::cgtab {

LineIndex::~LineIndex() {
    for (uint32_t i = 0; i < listCount_; ++i) {
        lq::Release(lists_[i]);
    }
    lq::Release(lists_);
    lq::Release(slots_);
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

LineIndex::Lines* LineIndex::NewLines(uint32_t capacity) {
    const size_t size = offsetof(Lines, at) + capacity * sizeof(int32_t);
    auto* const list = static_cast<Lines*>(lq::Allocate(size));
    if (list) {
        list->count = 0;
        list->capacity = capacity;
    }
    return list;
}

// Moves the only line of a text into a list.
bool LineIndex::MakeList(Slot& slot) {
    if (listCount_ == listCapacity_) {
        const uint32_t capacity = std::max(kFirstCapacity, 2 * listCapacity_);
        auto** const lists = lq::AllocateArray<Lines*>(capacity);
        if (!lists) {
            return false;
        }
        std::copy_n(lists_, listCount_, lists);
        lq::Release(lists_);
        lists_ = lists;
        listCapacity_ = capacity;
    }
    Lines* const list = NewLines(2);
    if (!list) {
        return false;
    }
    list->at[list->count++] = slot.at;
    lists_[listCount_] = list;
    slot.at = ~static_cast<int32_t>(listCount_++);
    return true;
}

bool LineIndex::Append(Slot& slot, int32_t pos) {
    if (slot.at >= 0 && !MakeList(slot)) {
        return false;
    }
    Lines*& list = lists_[~slot.at];
    if (list->count == list->capacity) {
        Lines* const larger = NewLines(2 * list->capacity);
        if (!larger) {
            return false;
        }
        std::copy_n(list->at, list->count, larger->at);
        larger->count = list->count;
        lq::Release(list);
        list = larger;
    }
    list->at[list->count++] = pos;
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
    const Lines* const list = at == kFree ? nullptr : lists_[~at];
    return list && n < list->count ? list->at[n] : -1;
}

}  // namespace lq::cgtab
