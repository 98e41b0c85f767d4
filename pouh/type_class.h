// What a declaration's type text is.
#pragma once

#include <cstdint>

namespace lq::pouh {

// The numbers are those of POUH_TYPE_KIND as far as both have them.
enum class TypeClass : uint8_t {
    kElementary = 1,
    kString = 3,
    kArray = 4,
    kFbInstance = 6,
    kStructInstance = 7,
    kStructText = 8,       // the text of a structure type itself
    kOtherStructText = 9,  // the same with the second opening keyword
};

enum class Classification : uint8_t {
    kAccepted,
    kRejected,     // the text is no type
    kUnavailable,  // there is no check scanner
};

// Tells what type `text` names. Unless accepted, `type` is kElementary.
Classification ClassifyType(const char16_t* text, TypeClass& type);

}  // namespace lq::pouh
