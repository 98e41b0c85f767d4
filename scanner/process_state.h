// What all scanners of the process share, in one place.
#pragma once

#include <cstdint>

namespace lq::scanner {

// Set by the identifier B_COMMENT: the next comma inside a string literal ends it. Reset by that
// comma and by the construction of any scanner.
extern bool commaEndsString;

// Whether the user adapter allows the string escape "$00"; asked anew on every call.
int32_t AskNulEscape();

}  // namespace lq::scanner
