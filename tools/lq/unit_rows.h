// Units and their sections of the component table.
#pragma once

#include <string>
#include <vector>

#include "lq_data/cgtab.h"
#include "tools/lq/output.h"
#include "tools/lq/table_rows.h"
#include "tools/lq/tables.h"

namespace lq::tool {

struct UnitSection {
    int32_t pos = 0;  // of the unit's line
    std::string unit;
    UnitInfo info;
};

// The sections, in the order of the unit table.
std::vector<UnitSection> SectionsOf(CgTab& tables);

// Finds the section that a component lies in. The sections must stay.
class SectionIndex {
  public:
    explicit SectionIndex(const std::vector<UnitSection>& sections);

    // Null for none.
    const UnitSection* At(uint32_t pos) const;

  private:
    std::vector<const UnitSection*> sorted_;  // by their starts
};

// Gives each row of components the unit in whose section it lies, as its first member behind "pos",
// and the table that column.
void NameUnits(TableRows& components, const std::vector<UnitSection>& sections);

// Print the units with their components below them; as a piece of a document, a list at that depth.
void PrintUnitsAsJson(CgTab& tables, const TableRows& units, int depth);
void PrintUnits(CgTab& tables, const TableRows& units);

}  // namespace lq::tool
