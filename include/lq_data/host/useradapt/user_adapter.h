// The user adapter's answers, for embedders and tests to set. They start as those of a system
// without an adapter: every option off, no hidden interfaces.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_useradapt.h"

namespace lq::host {

struct UserAdapterAnswers {
    int32_t intAsBits = 0;  // LQ_ASK_INT_AS_BITS: decimal integer constants may be bit strings
    int32_t bitsAsInt = 0;  // LQ_ASK_BITS_AS_INT: 0: bit-string constants may be integers
    int32_t nulEscape = 0;  // LQ_ASK_NUL_ESCAPE: "$00" is allowed in string literals
    // Hidden interfaces; null: no answer. Not copied: they must outlive their use.
    const LQ_INTERFACE_REPLY* sfcStep = nullptr;
    const LQ_INTERFACE_REPLY* sfcAction = nullptr;
    const LQ_INTERFACE_REPLY* sfcDebug = nullptr;
};

// The answers in force. Assign {} to return to the defaults.
LQ_DATA_API UserAdapterAnswers& GetUserAdapterAnswers() noexcept;

}  // namespace lq::host
