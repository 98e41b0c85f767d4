// What the bytes of lines say that the tables' records do not: which lines they lead to. A search
// for a name reads them, too, because it passes most lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lq_data/cgtab.h"

namespace lq::tool {

// What stands in front of a line's own data. Where that is not there, because the line is damaged,
// it stays as it is.
struct LineHead {
    int32_t next = -1;      // where the line ends; -1 when it is damaged
    std::string_view name;  // the name's bytes
};

// Positions of other lines; -1 for none.
struct LineLinks {
    int32_t global = -1;  // that an external refers to
    int32_t address = -1;
    int32_t constant = -1;
    int32_t array = -1;
};

// The bytes of a table, as in an image.
std::string BytesOf(CgTab& tables, CgTab::TAB_ID id);

// Of the line at `pos`, a position in `table`.
LineHead HeadOf(CgTab::TAB_ID id, std::string_view table, int32_t pos);
LineLinks LinksOf(CgTab::TAB_ID id, std::string_view table, const LineHead& head);

}  // namespace lq::tool
