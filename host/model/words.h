// Questions about words of IEC text.
#pragma once

#include "lq_data/export.h"

namespace lq::host {

// Whether `name` is an IEC identifier: letters, digits and single underscores, not beginning with a
// digit, not ending with an underscore, and no keyword in any case.
LQ_DATA_API LQ_DATA_API bool IsIdentifier(const char16_t* name);

}  // namespace lq::host
