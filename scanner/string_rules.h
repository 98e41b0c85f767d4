// What stands in a string literal, beside the grammar (scanner/string_literal.h) and the escapes
// (lq_data/string_escapes.h): the two settings that change how a literal is read.
#pragma once

#include <cstdint>
#include <utility>

#include "frame/per_thread.h"
#include "lq_data/string_escapes.h"

namespace lq::scanner {

// Whether the user adapter allows the string escape "$00"; asked anew on every call.
int32_t AskNulEscape();

// One flag for all scanners of a thread. The identifier B_COMMENT sets it: the next comma inside a
// string literal then ends that literal. That comma resets it, and so does the construction of any
// scanner.
class alignas(8) CommaFlag {
  public:
    void Set(bool isSet) noexcept { isSet_ = isSet; }
    // Resets it and tells whether it was set.
    bool Take() noexcept { return std::exchange(isSet_, false); }

  private:
    bool isSet_ = false;
};
LQ_THREAD_LOCAL extern CommaFlag commaEndsString;

}  // namespace lq::scanner
