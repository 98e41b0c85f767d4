// The strings of the resource libraries: one list of ids here, one text a language in the
// language's header.
//
// A new string: its id here, its text in every language. A language that lacks one does not
// compile. A new language: another header and strings_*.cpp, entered in CMakeLists.txt and
// built_in.cpp.
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

}  // namespace lq::host

// Exports the strings of a language; once in each resource library.
#define LQ_EXPORT_STRINGS(strings)                                \
    extern "C" LQ_DATA_API const LQ_STRING_TABLE lq_string_table; \
    const LQ_STRING_TABLE lq_string_table = {std::size(strings), strings};
