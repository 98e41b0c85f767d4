// The lines of tables as rows with their links resolved.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lq_data/cgtab.h"
#include "tools/lq/output.h"

namespace lq::tool {

struct TableRows {
    CgTab::TAB_ID id = CgTab::TAB_DBG;
    std::vector<Table::Column> columns;
    Json rows = Json::array();         // as TableOf takes them
    std::optional<int32_t> damagedAt;  // where reading stopped before the end
};

// All lines of a table. Moves the tables' positions.
TableRows RowsOf(CgTab& tables, CgTab::TAB_ID id);

// Whether the table is damaged, which becomes a message on the input of that path.
bool ReportDamage(const std::string& input, const TableRows& rows);

// The column by which lines are found: the address, the text of a constant, the type of an array
// where lines have no name.
const char* NameColumn(CgTab::TAB_ID id);

// Keeps the lines of that name, whatever the case. Of components "A.B" keeps B in the section of
// the unit A; their rows name their units then.
void KeepNamed(TableRows& rows, const std::string& name);

// Adds what KeepNamed would find.
void AddNames(const TableRows& rows, std::vector<std::string>& names);

// The rows under the table's name.
Table AsTable(const TableRows& rows);

}  // namespace lq::tool
