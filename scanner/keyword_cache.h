// The scanner's short way to its keywords. A keyword is kept under its length, its first and its
// last character; most identifiers meet an empty place there and are known to be none without a
// hash of the whole text.
#pragma once

#include <cstdint>

#include "lq_data/memory.h"

namespace lq::scanner {

class KeywordCache {
  public:
    static constexpr int32_t kNone = -1;

    // `name` is the table's copy, which outlives the cache.
    void Add(const char16_t* name, int32_t id);

    // True when the answer is certain: `id` is then the keyword's, or kNone. False when keywords
    // share the place and only the table knows.
    bool Find(const char16_t* text, int32_t length, int32_t& id) const {
        const Slot& slot = slots_[Place(text, length)];
        id = kNone;
        if (slot.length == length && Equal(slot.name, text, length)) {
            id = slot.id;
            return true;
        }
        return !slot.isShared;
    }

    LQ_ALLOCATED

  private:
    static constexpr uint32_t kSlots = 512;

    struct Slot {
        const char16_t* name = nullptr;
        int32_t id = kNone;
        int32_t length = 0;     // 0: empty
        bool isShared = false;  // other keywords belong here too
    };

    // Of a text that is not empty.
    static uint32_t Place(const char16_t* text, int32_t length) {
        return (text[0] * 5u + text[length - 1] * 59u + static_cast<uint32_t>(length) * 37u) %
               kSlots;
    }
    static bool Equal(const char16_t* a, const char16_t* b, int32_t length) {
        int32_t i = 0;
        while (i < length && a[i] == b[i]) {
            ++i;
        }
        return i == length;
    }

    Slot slots_[kSlots];
};

}  // namespace lq::scanner
