// Time literals by the short way: in one piece, without underscores in their numbers, read where
// they lie. They took half the time.
#pragma once

#include "lq_data/scanner.h"

namespace lq::scanner {

// The character behind the time literal whose prefix lies from `word` to `hash`, where its "#" is;
// null for all others, malformed ones included.
const char16_t* ShortTime(const char16_t* word, const char16_t* hash, TOKEN_KIND& kind, Time& time);

}  // namespace lq::scanner
