// The strings of the resource libraries: one list of ids, and a list of texts for each language.
//
// A new string: its id, and its text in every language. A language that lacks one does not compile.
// A new language: its texts, entered in CMakeLists.txt and built_in.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "lq_data/host/framework/string_table.h"

namespace lq::host {

inline constexpr uint32_t kStringIds[] = {
    6491,   // the string keyword
    6492,   // the array keyword
    10000,  // shown for the value of a 64-bit integer
};

// True when `strings` has a text for each id, in the order of the list.
template <std::size_t count>
constexpr bool IsComplete(const LQ_STRING_RESOURCE (&strings)[count]) {
    if (count != std::size(kStringIds)) {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (strings[i].id != kStringIds[i] || !strings[i].text || strings[i].text[0] == 0) {
            return false;
        }
    }
    return true;
}

inline constexpr LQ_STRING_RESOURCE kEnglish[] = {
    {6491, u"STRING"},
    {6492, u"ARRAY"},
    {10000, u"(64-bit value)"},
};
static_assert(IsComplete(kEnglish), "a text is missing or out of order");

inline constexpr LQ_STRING_RESOURCE kJapanese[] = {
    {6491, u"STRING"},
    {6492, u"ARRAY"},
    {10000, u"(64ビット値)"},
};
static_assert(IsComplete(kJapanese), "a text is missing or out of order");

}  // namespace lq::host
