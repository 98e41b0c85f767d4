#include "scanner/keyword_cache.h"

#include "frame/chars.h"

namespace lq::scanner {

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
