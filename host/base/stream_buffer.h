// What the streams over memory share: reporting, seeking and growth.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include "lq_data/env/lq_base.h"

namespace lq::host {

inline void Report(STREAMERROR* error, STREAMERROR value) noexcept {
    if (error) {
        *error = value;
    }
}

// Ends an operation that moved `moved` of `wanted` elements: `shortage` says why they were fewer.
inline int32_t Moved(int32_t moved, int32_t wanted, STREAMERROR shortage,
                     STREAMERROR* error) noexcept {
    Report(error, moved < wanted ? shortage : STREAM_OK);
    return moved;
}

inline int Seek(int32_t& position, int32_t wanted, int32_t length, STREAMERROR* error) noexcept {
    const bool isInside = wanted >= 0 && wanted <= length;
    if (isInside) {
        position = wanted;
    }
    Report(error, isInside ? STREAM_OK : STREAM_END);
    return isInside ? 1 : 0;
}

// Makes room for `count` (above 0) elements at `position` of a heap buffer of `size` elements, of
// which `length` are used. Returns the buffer, perhaps a new one, and updates `size`; null, and
// everything stays, when memory is short or positions would leave 32 bits.
template <typename T>
T* Grow(T* buffer, int32_t length, int32_t& size, int32_t position, int32_t count) noexcept {
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    constexpr int32_t kSmallest = 256;
    if (count > kMax - position) {
        return nullptr;
    }
    if (position + count <= size) {
        return buffer;
    }
    const int32_t doubled = size > kMax / 2 ? kMax : 2 * size;
    const int32_t wanted = std::max({position + count, doubled, kSmallest});
    T* fresh = AllocateArray<T>(static_cast<std::size_t>(wanted));
    if (fresh) {
        std::copy_n(buffer, length, fresh);
        Release(buffer);
        size = wanted;
    }
    return fresh;
}

}  // namespace lq::host
