#include "scanner/keyword_cache.h"

#include "frame/chars.h"

namespace lq::scanner {

void KeywordCache::Add(const char16_t* name, int32_t id) {
    const auto length = static_cast<int32_t>(chars::Length(name));
    if (length == 0) {
        return;  // no identifier is empty
    }
    Slot& slot = slots_[Place(name, length)];
    if (slot.length != 0) {
        slot.isShared = true;
    } else {
        slot = {name, id, length, false};
    }
}

}  // namespace lq::scanner
