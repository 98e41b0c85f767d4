// The lines of tables as rows with their links resolved.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/cgtab.h"
#include "tools/lq/output.h"
#include "tools/lq/tables.h"

namespace lq::tool {

class TypeNames;

// What lines keep of types with a name of the project's, and of arrays of them behind "OF ".
inline constexpr std::string_view kStructureType = "STRUCTURE";
inline constexpr std::string_view kBlockType = "FUNCTION_BLOCK";

// Where a variable is declared: a global in no unit.
struct Variable {
    std::string_view unit;
    std::string_view name;
    uint32_t line = 0;
};

// Reads lines of one table, one at a time. Reading moves the tables' positions.
class RowReader {
  public:
    // With `sections`, which must stay, components name the unit in whose section they lie.
    RowReader(CgTab& tables, CgTab::TAB_ID id, const SectionIndex* sections = nullptr);

    // Types show the names that are known from now on; `types` must stay. Without sections those of
    // components are looked for in the unit.
    void NameTypes(TypeNames& types) { types_ = &types; }
    void SetUnit(const std::string& unit) { unit_ = unit; }
    // Whether the row is a variable's whose type has a name that its line does not keep, and which
    // variable that is.
    bool LacksTypeName() const;
    Variable GetVariable() const;

    const std::vector<Column>& Columns() const { return columns_; }
    // The number of a column; that of all when there is none of the title.
    size_t ColumnOf(std::string_view title) const;
    // The column by which lines are found: the address, the text of a constant, the type of an
    // array where lines have no name.
    size_t NameColumn() const { return nameColumn_; }
    // That of the units, of components with `sections`; otherwise any column.
    static constexpr size_t UnitColumn() { return 1; }

    // Reads the line at `pos`, which becomes the next line's. False when it is damaged; `pos` stays
    // and there is no row.
    bool Read(int32_t& pos);
    const Row& Get() const { return row_; }
    // The position behind the line that was read last.
    int32_t Next() const { return next_; }
    // The name in the row; null for none.
    const std::string* Name() const { return std::get_if<std::string>(&row_[nameColumn_]); }

    // Calls `take` after each line of the table. Where reading stopped before the end.
    template <typename Take>
    std::optional<int32_t> ForEach(Take take) {
        int32_t pos = 0;
        for (const int32_t end = End(); pos < end; take()) {
            if (!Read(pos)) {
                return pos;
            }
        }
        return std::nullopt;
    }

  private:
    int32_t End() const;

    CgTab& tables_;
    CgTab::TAB_ID id_;
    const SectionIndex* sections_;
    std::vector<Column> columns_;
    size_t nameColumn_ = 0;
    size_t typeColumn_ = 0;
    TypeNames* types_ = nullptr;
    std::string unit_;
    Row row_;
    int32_t next_ = 0;
};

// Whether the table is damaged, which becomes a message on the input of that path.
bool ReportDamage(const std::string& input, CgTab::TAB_ID id, std::optional<int32_t> damagedAt);

}  // namespace lq::tool
