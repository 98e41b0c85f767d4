// Constants as the checks judge them: integers of 64 bits, and typed literals, too.
#pragma once

#include <cstdint>
#include <string_view>

#include "host/check/words.h"
#include "lq_data/types.h"

namespace lq::host::check {

struct Constant {
    enum class Kind : uint8_t {
        kNone,       // no constant, or none that is judged here
        kMalformed,  // a duration, date or time of day that is none
        kBool,
        kInteger,
        kReal,
        kString,
        kTime,
        kDate,
        kTimeOfDay,
        kDateAndTime,
        kName,
    };

    Kind kind = Kind::kNone;
    bool isNegative = false;
    bool isBased = false;     // 16#FF, which may stand for a bit pattern
    bool isTooLarge = false;  // an integer of more than 64 bits
    uint64_t magnitude = 0;   // of an integer
    double real = 0;          // without its sign
    std::size_t length = 0;   // of a string, in characters
    bool isZero = false;      // of a duration
    u16string_view prefix;    // "INT" of INT#5
    u16string_view name;
};

Constant ReadConstant(u16string_view text);

// The set of the elementary types (TYPE_BITS) that a number can be a value of. Integers are values
// of the real types, too, and 0 and 1 of BOOL.
uint32_t TypesOf(const Constant& number);

// Whether a value of one type is taken for one of the other as it stands: the third edition widens
// integers, reals and bit strings, the second one nothing. Types of other kinds are not compared.
bool IsWidening(IEC_TYPE from, IEC_TYPE to);

}  // namespace lq::host::check
