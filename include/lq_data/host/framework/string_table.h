// String resources: what a resource library holds, and how a text is found in a module.
//
// A resource library is a shared object that exports one LQ_STRING_TABLE by the name
// lq_string_table.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_framework.h"
#include "lq_data/export.h"

struct LQ_STRING_RESOURCE {
    uint32_t id;
    const char16_t* text;
};

struct LQ_STRING_TABLE {
    uint32_t count;
    const LQ_STRING_RESOURCE* strings;  // in any order
};

namespace lq::host {

inline constexpr char kStringTableSymbol[] = "lq_string_table";

// The text of string `id` of a module, or null; null has no strings. The text lives as long as the
// module is loaded.
LQ_DATA_API const char16_t* FindString(HINSTANCE module, uint32_t id) noexcept;

// The application's own module, the first current resource module. It has the strings that the
// application gives it, and for the other ids the library's own in English, so that keywords are
// known without any resource library. The table is not copied, and null takes it away.
LQ_DATA_API HINSTANCE GetApplicationModule() noexcept;
// Makes another table that of the application's module.
LQ_DATA_API void SetApplicationStrings(const LQ_STRING_TABLE* table) noexcept;

// The host layer's own texts, which need no file and are not exported.
//
// What the application's module has besides its own strings.
extern const LQ_STRING_TABLE kDefaultStrings;
// The texts of a language in a program that holds the library itself, by the resource library's
// file name; null for none. Libraries that are found as files come first. Never to be freed.
HINSTANCE FindBuiltIn(const char* file) noexcept;

}  // namespace lq::host
