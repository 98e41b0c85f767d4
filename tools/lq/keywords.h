// The keywords of IEC 61131-3 that the tool's scanner reports as such.
#pragma once

#include "lq_data/scanner.h"

namespace lq::tool {

// In capitals and in small letters. Throws std::bad_alloc.
void RegisterKeywords(Scanner& scanner);

}  // namespace lq::tool
