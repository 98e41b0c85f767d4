// The text of a type, looked at without a project.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/export.h"

namespace lq::host::symbols {

struct Bounds {
    int64_t lower = 0;
    int64_t upper = 0;

    // The number of elements; 0 when the bounds are out of order.
    uint64_t Count() const;
};

struct TypeText {
    enum class Kind : uint8_t {
        kElementary,  // or generic, with a length or range or not; a reference; a nameless
                      // enumeration
        kArray,
        kNamed,
        kNamelessStructure,
    };

    Kind kind = Kind::kNamed;
    std::u16string_view rest;    // the name; of an array the type of its elements
    std::vector<Bounds> bounds;  // of an array; empty when not all are whole numbers
};

TypeText ReadTypeText(std::u16string_view text);

// "INT" of "INT (0..5)"; an enumeration stays what it is.
std::u16string_view WithoutRange(std::u16string_view text);

// How many bits an address must have to be that of a variable of this type: 0 for what is no
// number or bit string, whose size each target chooses.
LQ_DATA_API unsigned BitsOfType(std::u16string_view text);

}  // namespace lq::host::symbols
