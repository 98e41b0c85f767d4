// Types, values and addresses of the tables as text.
#pragma once

#include <string>

#include "lq_data/cgtab.h"

namespace lq::tool {

// "INT", "STRING(20)", "ARRAY [1..10] OF INT"; "STRUCTURE" and "FUNCTION_BLOCK" for instances.
std::string TypeText(IEC_TYPE type, const CgTab::TYP_DSC& dsc);

// "[1..10, -2..2]"; rewinds the description.
std::string BoundsText(ArrInfo& info);

// "ARRAY [1..10] OF INT".
std::string ArrayText(const CgTab::ArrDsc& array);

// "%QW0"; the empty text for the address line that stands for none.
std::string AddressText(const CgTab::ADR_LINE& line);

// The name of a value class, as "SINT"; "none" without a value.
std::string ValueClassName(VAL_TYPE type);

// The value's text form; the empty text when it has none.
std::string ValueText(Val value);

// The keyword of a declaration scope; its number when there is none.
std::string ScopeText(uint32_t scope);

}  // namespace lq::tool
