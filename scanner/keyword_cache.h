// The scanner's short way to its keywords. They are kept under a number made of their length and
// three of their characters, so that nearly every identifier that is no keyword meets an empty
// place, without a hash of its whole text. The keyword table itself is asked only when there are
// more keywords than fit. The places get their memory with the first keyword, as many scanners have
// none.
#pragma once

#include <algorithm>
#include <cstdint>

#include "lq_data/detail/chars.h"
#include "lq_data/memory.h"

namespace lq::scanner {

class KeywordCache {
  public:
    static constexpr int32_t kNone = -1;

    KeywordCache() = default;
    ~KeywordCache() { Release(slots_); }
    KeywordCache(const KeywordCache&) = delete;
    KeywordCache& operator=(const KeywordCache&) = delete;

    LQ_ALLOCATED

    // Room for keywords; false when memory is short for it. Before the first Add.
    bool Reserve() {
        if (!slots_) {
            slots_ = AllocateArray<Slot>(kSlots);
            if (!slots_) {
                return false;
            }
            std::fill_n(slots_, kSlots, Slot{nullptr, kNone, 0});
        }
        return true;
    }
    // `name` is the table's copy, which outlives the cache.
    void Add(const char16_t* name, int32_t id) {
        const auto length = static_cast<int32_t>(chars::Length(name));
        if (length == 0) {
            return;  // no identifier is empty
        }
        if (count_ == kMostKeywords) {
            isComplete_ = false;
            return;
        }
        uint32_t place = Place(name, length);
        while (slots_[place].length != 0) {
            place = (place + 1) % kSlots;
        }
        slots_[place] = {name, id, length};
        ++count_;
    }

    // Whether all keywords that were added are here.
    bool IsComplete() const { return isComplete_; }
    // The id of the keyword of that text, which is not empty; kNone when there is none here.
    int32_t Find(const char16_t* text, int32_t length) const {
        if (count_ == 0) {
            return kNone;
        }
        uint32_t place = Place(text, length);
        while (slots_[place].length != 0) {
            const Slot& slot = slots_[place];
            if (slot.length == length && Equal(slot.name, text, length)) {
                return slot.id;
            }
            place = (place + 1) % kSlots;
        }
        return kNone;
    }

  private:
    static constexpr uint32_t kSlots = 1024;
    static constexpr uint32_t kMostKeywords = kSlots / 2;  // so that empty places stay frequent

    struct Slot {
        const char16_t* name;
        int32_t id;
        int32_t length;  // 0: empty
    };

    static uint32_t Place(const char16_t* text, int32_t length) {
        const uint32_t sum = text[0] * 5u + text[length - 1] * 59u + text[length / 2] * 131u;
        return (sum + static_cast<uint32_t>(length) * 37u) % kSlots;
    }
    static bool Equal(const char16_t* a, const char16_t* b, int32_t length) {
        int32_t i = 0;
        while (i < length && a[i] == b[i]) {
            ++i;
        }
        return i == length;
    }

    Slot* slots_ = nullptr;
    uint32_t count_ = 0;
    bool isComplete_ = true;
};

}  // namespace lq::scanner
