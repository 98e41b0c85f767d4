// The types that can hold a constant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lq_data/types.h"

namespace lq::tool {

struct ConstantTypes {
    std::vector<std::string> all;
    std::string single;    // the most specific type for all of them
    std::string smallest;  // empty when none of them has a size of its own
};

// `text` is the constant as written, `value` what it reads as. A number in binary, octal or
// hexadecimal is a bit string; a duration, date or truth value has its own type.
ConstantTypes TypesOf(std::u16string_view text, const Val& value);

// The names of the types of a set, in the order of the catalogue.
std::vector<std::string> TypeNames(uint32_t bits);

}  // namespace lq::tool
