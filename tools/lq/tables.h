// The tool's table sets: their user areas, names, and the layout of what it keeps in them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/cgtab.h"
#include "lq_data/detail/in_order.h"
#include "lq_data/translate.h"

namespace lq::tool {

// The user areas of tables 1 to 8 hold the line of the source that first entered the line, 32 bits
// little-endian; 0 where there is none. Table 0 has no user area.
inline constexpr uint32_t kUserArea = 4;

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

// Names as the command line and the output use them.
inline constexpr RowOf<CgTab::TAB_ID, std::string_view> kTableNames[] = {
    {CgTab::TAB_DBG, "debug"},   {CgTab::TAB_POU, "units"},       {CgTab::TAB_CMP, "components"},
    {CgTab::TAB_GLB, "globals"}, {CgTab::TAB_ADR, "addresses"},   {CgTab::TAB_CST, "constants"},
    {CgTab::TAB_LBL, "labels"},  {CgTab::TAB_TMP, "temporaries"}, {CgTab::TAB_DMM, "names"},
    {CgTab::TAB_ARR, "arrays"}};
static_assert(AreInOrder(kTableNames, CgTab::TAB_ARR));

constexpr std::string_view TableName(CgTab::TAB_ID id) {
    return kTableNames[id].value;
}

// The lines of a table, by following their length fields.
struct TableExtent {
    uint32_t lines = 0;
    int32_t bytes = 0;
};
TableExtent ExtentOf(CgTab& tables, CgTab::TAB_ID id);

// A unit and its section of the component table.
struct UnitSection {
    int32_t pos = 0;  // of the unit's line
    std::string unit;
    UnitInfo info;
};

// The sections, in the order of the unit table.
std::vector<UnitSection> SectionsOf(CgTab& tables);

// Finds the section that a component lies in.
class SectionIndex {
  public:
    explicit SectionIndex(std::vector<UnitSection> sections = {});

    // Null for none.
    const UnitSection* At(uint32_t pos) const;

  private:
    std::vector<UnitSection> sorted_;  // those with components, by their starts
};

// The words for a POUH_POU_TYPE, as "function block"; a number's decimal text when it is none.
std::string UnitKindName(uint32_t kind);

}  // namespace lq::tool
