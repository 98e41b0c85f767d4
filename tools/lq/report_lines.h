// What the report takes from the bytes of lines, because the tables' records resolve it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lq_data/cgtab.h"

namespace lq::tool {

// Positions of other lines; -1 for none.
struct LineParts {
    uint32_t nameBytes = 0;
    int32_t global = -1;  // that an external refers to
    int32_t address = -1;
    int32_t constant = -1;
    int32_t array = -1;
};

// The bytes of a table, as in an image.
std::string BytesOf(CgTab& tables, CgTab::TAB_ID id);

// The parts of the line at `pos`. What is not there, because the line is damaged, stays as it is.
LineParts PartsOf(CgTab::TAB_ID id, std::string_view table, int32_t pos);

}  // namespace lq::tool
