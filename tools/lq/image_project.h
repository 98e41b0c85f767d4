// What tables hold, as a project.
#pragma once

#include <string>

#include "lq_data/cgtab.h"
#include "lq_data/host/model/project.h"

namespace lq::tool {

// Fills the project with what the tables tell: units with their variables and temporaries, labels
// and whether jumps lead there; globals, in a configuration without a name; of types the names that
// declarations use. Types of variables are as the tables describe them, places those of the source
// that the tables were made from, in a file of that name. Throws CommandError for a damaged line.
void FillFromTables(CgTab& tables, const std::string& file, host::Project& project);

}  // namespace lq::tool
