// The texts of all languages inside a program that holds the library itself: such a program finds
// them wherever it lies. Resource libraries that are found as files come first.
#pragma once

#include "lq_framework.h"

namespace lq::host {

// By the resource library's file name; null for none. Never to be freed.
HINSTANCE FindBuiltIn(const char* file) noexcept;

}  // namespace lq::host
