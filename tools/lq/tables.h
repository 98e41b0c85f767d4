// The tool's table sets: their user areas, names, and the layout of what it keeps in them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/cgtab.h"

namespace lq::tool {

// The user areas of tables 1 to 8 hold the line of the source that first entered the line, 32 bits
// little-endian; 0 where there is none. Table 0 has no user area.
inline constexpr uint32_t kUserArea = 4;

// The 20 bytes of a unit: five numbers of 32 bits, little-endian.
struct UnitInfo {
    uint32_t start = 0;  // its section of table 2
    uint32_t end = 0;
    uint32_t lines = 0;
    uint32_t kind = 0;       // POUH_POU_TYPE
    uint32_t instances = 0;  // structures and function blocks declared in it

    static UnitInfo From(const CgTab::POU_INFO& info);
    void To(unsigned char* bytes) const;
};

// A debug record: the source position of a unit. 32 bits of line, one byte of POUH_POU_TYPE, the
// name in UTF-8, cut to the 250 bytes that are left.
struct UnitPosition {
    uint32_t line = 0;
    uint32_t kind = 0;
    std::string name;

    // False when the bytes are no such record.
    bool From(const CgTab::DBG_INFO& info);
    std::vector<unsigned char> Bytes() const;
};

// An empty set. Throws std::bad_alloc.
std::unique_ptr<CgTab> NewTables();

// Names as the command line and the output use them, in the order of TAB_ID.
inline constexpr std::string_view kTableNames[CgTab::TAB_COUNT] = {
    "debug",     "units",  "components",  "globals", "addresses",
    "constants", "labels", "temporaries", "names",   "arrays"};

// The lines of a table, by following their length fields.
struct TableExtent {
    uint32_t lines = 0;
    int32_t bytes = 0;
};
TableExtent ExtentOf(CgTab& tables, CgTab::TAB_ID id);

// The words for a POUH_POU_TYPE, as "function block"; a number's decimal text when it is none.
std::string UnitKindName(uint32_t kind);

}  // namespace lq::tool
