// How often a project uses what it declares.
#pragma once

#include <cstdint>
#include <vector>

#include "lq_data/cgtab.h"
#include "lq_data/host/model/project.h"

namespace lq::tool {

// The uses of each declaration, by the index of its identifier: of an external those in its unit,
// of a global all. The project must have been read with its code.
std::vector<uint32_t> CountUses(const host::Project& project);

// Counts them in the lines of components. (In those of globals a lookup does not count.)
void CountUsesInTables(const host::Project& project, CgTab& tables);

}  // namespace lq::tool
