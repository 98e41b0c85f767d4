// Access to the payload bytes of a Val.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "lq_data/types.h"

namespace lq::types {

// Where the milliseconds of VT_TIME and VT_DT lie.
inline constexpr std::size_t kMsOffset = 4;

template <typename T>
T Load(const Val& v, std::size_t offset = 0) {
    T field;
    std::memcpy(&field, v.payload + offset, sizeof(field));
    return field;
}

template <typename T>
void Store(Val& v, T field, std::size_t offset = 0) {
    static_assert(sizeof(field) <= sizeof(v.payload));
    std::memcpy(v.payload + offset, &field, sizeof(field));
}

// Reads an integer class, VT_SINT to VT_UDINT. False, and `out` unchanged, for every other.
inline bool LoadInteger(const Val& v, int64_t& out) {
    switch (v.type) {
        case VT_SINT:
            out = static_cast<int64_t>(Load<int8_t>(v));
            return true;
        case VT_USINT:
            out = Load<uint8_t>(v);
            return true;
        case VT_INT:
        case VT_DINT:
            out = Load<int32_t>(v);
            return true;
        case VT_UINT:
            out = Load<uint16_t>(v);
            return true;
        case VT_UDINT:
            out = Load<uint32_t>(v);
            return true;
        default:
            return false;
    }
}

}  // namespace lq::types
