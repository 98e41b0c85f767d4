// Texts that need no file: the English ones of the application's module, and those of all languages
// inside a program that holds the library itself. Such a program finds them wherever it lies;
// resource libraries that are found as files come first.
#pragma once

#include "lq_data/host/framework/string_table.h"

namespace lq::host {

// What the application's module has besides its own strings.
extern const LQ_STRING_TABLE kDefaultStrings;

// By the resource library's file name; null for none. Never to be freed.
HINSTANCE FindBuiltIn(const char* file) noexcept;

}  // namespace lq::host
