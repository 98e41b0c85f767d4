// The lines of tables as rows with their links resolved.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lq_data/cgtab.h"
#include "tools/lq/output.h"

namespace lq::tool {

struct TableRows {
    CgTab::TAB_ID id = CgTab::TAB_DBG;
    std::vector<Table::Column> columns;
    Json rows = Json::array();  // as CellsOf takes them, but for texts that are shared
    // Long texts, each once: thousands of variables may have the type of one array, or the value of
    // one constant. In a row a number where a text belongs is the place of one.
    std::shared_ptr<std::deque<std::string>> texts = std::make_shared<std::deque<std::string>>();
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

// Whether the member of a row is a text in `texts`.
bool IsShared(const std::string& member, const Json& value);

// A row with its texts.
Json WholeRow(const TableRows& rows, const Json& row);

// Prints the rows as a table; as a piece of a document, a list at that depth.
void PrintRows(const TableRows& rows, const std::string& title);
void PrintRowsAsJson(const TableRows& rows, int depth);

}  // namespace lq::tool
