// Faults in words of the user's language.
#pragma once

#include <string>

#include "cgtab/declaration.h"
#include "lq_data/scanner.h"

namespace lq::tool {

// Why a declaration was not entered.
std::string FaultText(cgtab::DeclFault fault);

// What is wrong with the text of an error token.
std::string ScanErrorText(int32_t error);

}  // namespace lq::tool
