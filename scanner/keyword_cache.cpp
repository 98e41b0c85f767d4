#include "scanner/keyword_cache.h"

#include <algorithm>

#include "frame/chars.h"

namespace lq::scanner {

bool KeywordCache::Reserve() {
    if (!slots_) {
        slots_ = AllocateArray<Slot>(kSlots);
        if (!slots_) {
            return false;
        }
        std::fill_n(slots_, kSlots, Slot{nullptr, kNone, 0});
    }
    return true;
}

void KeywordCache::Add(const char16_t* name, int32_t id) {
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

}  // namespace lq::scanner
