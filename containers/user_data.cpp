#include <algorithm>
#include <cstring>

#include "lq_data/containers.h"

namespace lq::containers {

bool UserData::Resize(uint32_t size) {
    if (!IsInPlace()) {
        Release(area_.block);
    }
    size_ = 0;
    area_ = {};
    if (size > kInPlace) {
        area_.block = AllocateArray<unsigned char>(size);
        if (!area_.block) {
            return false;
        }
        std::memset(area_.block, 0, size);
    }
    size_ = size;
    return true;
}

bool UserData::Set(const void* from) {
    if (size_ != 0 && !from) {
        return false;
    }
    if (size_ != 0) {
        std::memcpy(Area(), from, size_);
    }
    return true;
}

bool UserData::Get(void* to) const {
    if (size_ != 0 && !to) {
        return false;
    }
    if (size_ != 0) {
        std::memcpy(to, Bytes(), size_);
    }
    return true;
}

int UserData::Compare(const UserData& other) const {
    const uint32_t common = std::min(size_, other.size_);
    const int order = std::memcmp(Bytes(), other.Bytes(), common);
    if (order != 0) {
        return order;
    }
    const auto isSet = [](unsigned char byte) { return byte != 0; };
    return std::any_of(Bytes() + common, Bytes() + size_, isSet) ? 1 : 0;
}

}  // namespace lq::containers
