// Japanese.
#pragma once

#include "host/resources/string_ids.h"

namespace lq::host {

inline constexpr LQ_STRING_RESOURCE kJapanese[] = {
    {6491, u"STRING"},
    {6492, u"ARRAY"},
    {10000, u"(64ビット値)"},
};
static_assert(IsComplete(kJapanese), "a text is missing or out of order");

}  // namespace lq::host
