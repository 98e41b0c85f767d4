// A table's bytes as a text, for what lq_data/line_bytes.h reads in them.
#pragma once

#include <string>

#include "lq_data/cgtab.h"
#include "lq_data/line_bytes.h"

namespace lq::tool {

// The bytes of a table, as in an image.
std::string BytesOf(CgTab& tables, CgTab::TAB_ID id);

}  // namespace lq::tool
