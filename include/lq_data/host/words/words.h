// Questions about words of IEC text, whatever the project.
#pragma once

#include <span>
#include <string_view>

#include "lq_data/export.h"

namespace lq::host {

// Whether `name` is an IEC identifier: letters, digits and single underscores, not beginning with a
// digit, not ending with an underscore, and no keyword in any case.
LQ_DATA_API bool IsIdentifier(const char16_t* name);

// Which beginnings of names the scanner's question is answered with yes for, beyond plain IEC
// identifiers; null, as at first, for none. For embedders and tests.
LQ_DATA_API void SetExtendedIdentifiers(bool (*accepts)(const char16_t* beginning));

// The keywords of the language and the names of its elementary and generic types, in capitals and
// in order.
LQ_DATA_API std::span<const std::u16string_view> Keywords();

// Whether the standard has a function of that name, in any case: "ADD", "INT_TO_REAL", "TO_REAL",
// "MAX_DINT".
LQ_DATA_API bool IsStandardFunction(std::u16string_view name);

// Whether the text of a type, in any case, names one of the language that the library has not:
// "LTIME", "WSTRING(5)", "REFERENCE TO INT".
LQ_DATA_API bool IsUnsupportedType(std::u16string_view type);

// Whether the word is an instruction of IL, in any case: "LD", "JMPC", "ADD"; those that are
// keywords of ST, too, are not.
LQ_DATA_API bool IsInstruction(std::u16string_view name);

}  // namespace lq::host
