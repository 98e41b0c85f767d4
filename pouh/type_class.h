// What a declaration's type text is.
#pragma once

#include <cstdint>

#include "lq_data/pouh.h"

namespace lq::pouh {

// A type of a kind that declarations have too has that kind's number; the others are told apart by
// their texts alone.
enum class TypeClass : uint8_t {
    kElementary = DT_ELEMENTARY,
    kString = DT_STRING,
    kArray = DT_ARRAY,
    kFbInstance = DT_FB_INSTANCE,
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
