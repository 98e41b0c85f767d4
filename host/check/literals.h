// Literals in bodies that the language does not have.
#pragma once

#include <cstdint>
#include <set>
#include <tuple>

#include "host/check/run.h"

namespace lq::host::check {

// Unit, line and column.
using Places = std::set<std::tuple<uint32_t, uint32_t, uint32_t>>;

// Reports them. Answers with the places of what stands behind the first token of one without a
// blank between, and is part of it.
Places CheckLiterals(Run& run);

}  // namespace lq::host::check
