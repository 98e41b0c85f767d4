// Where a module's file lies.
#pragma once

#include <cstddef>

#include <climits>

#include "lq_data/env/lq_framework.h"

namespace lq::host {

// A path in the file system's own bytes, terminated.
using PathBuffer = char[PATH_MAX];

// Writes `format` with its arguments, as snprintf; false when it does not fit.
__attribute__((format(printf, 2, 3))) bool FormatPath(PathBuffer& path, const char* format,
                                                      ...) noexcept;

// The folder of the file that holds `module` (null: the running program), without a slash at the
// end but for the root's; false when the system does not tell.
bool GetModuleFolder(HINSTANCE module, PathBuffer& folder) noexcept;

}  // namespace lq::host
