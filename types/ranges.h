// The sets of types that can hold a constant, without the site's answers that choose among them.
#pragma once

#include <cstdint>

namespace lq::types {

// `asBits`: a decimal integer may be a bit string too.
uint32_t IntegerSet(bool negative, uint32_t magnitude, bool asBits);

// `asIntegers`: a bit string may be a signed integer too.
uint32_t BitStringSet(uint32_t value, bool asIntegers);

}  // namespace lq::types
