// Texts that lie beside the document that they were generated from.
#pragma once

#include <string>
#include <vector>

#include "tools/lq/commands.h"
#include "tools/lq/source_files.h"

namespace lq::tool {

// For each of the sources the XML document that it was generated from, and that is read in its
// stead; empty for most. A text is taken for one when all units and types that it declares are
// those of a document, or all of a document's are among its own.
std::vector<std::string> OriginsOf(const std::vector<SourceFile>& sources,
                                   const ProjectFiles& files);

}  // namespace lq::tool
