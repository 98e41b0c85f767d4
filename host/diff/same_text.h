// When two texts of a project say the same.
#pragma once

#include "lq_data/host/model/text_pool.h"

namespace lq::host::diff {

// Two texts of the language: without regard to case and to blanks between words, but for what is in
// quotes.
bool IsSameCode(Text a, Text b);

// Two texts for people: without regard to how many blanks and line breaks stand between words.
bool IsSameProse(Text a, Text b);

}  // namespace lq::host::diff
