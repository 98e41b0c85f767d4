// The families of the table. A folder that brings checks of its own declares its rows here, and the
// table takes them up.
#pragma once

#include <span>

#include "lq_data/host/check/check.h"

namespace lq::host::check {

using Rows = std::span<const Check>;

// The row of a code; null for a code that no row has.
const Check* FindRow(uint16_t code) noexcept;

Rows ReaderRows();
Rows NameRows();
Rows TypeRows();
Rows ValueRows();
Rows AddressRows();
Rows SectionRows();
Rows AccessRows();
Rows UnitRows();
Rows TaskRows();
Rows LabelRows();
Rows VariableUseRows();
Rows NameUseRows();
Rows LiteralRows();
Rows DrawingRows();
Rows StatementRows();

}  // namespace lq::host::check
