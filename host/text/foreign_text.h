// What stands in IEC text and is no code. Whoever reads bodies asks here what to pass over.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lq_data/export.h"

namespace lq::host {

// The position behind the pragma whose first brace stands at `at`. A pragma ends where as many
// braces are closed as were opened: "{{ if (x) { f(); } }}" is one. Every brace counts, also one
// within a string or comment of the pragma: what language it is written in is not known. A pragma
// that is not closed runs to the end of the text, which `isOpen` tells, if it is not null.
LQ_DATA_API std::size_t EndOfPragma(std::u16string_view text, std::size_t at,
                                    bool* isOpen = nullptr);

// The text with a blank for each character that is no code: pragmas, comments, and what strings
// hold. Line breaks stay, so that lines and columns are those of the text. What is left contains
// nothing that the scanner takes for a comment.
//
// - Comments are "(* *)", "/* */" and, to the end of the line, "//". "(* (* *) *)" is one comment
//   where all marks of the text from there on are in pairs; where they are not, a comment ends at
//   the first closing mark, as it does for the scanner. One that is not closed runs to the end.
// - A string ends with its line at the latest; one that is not closed there is blank with its mark.
//
// `pragmas` receives where pragmas stand, if that is asked for.
using TextSpans = std::vector<std::pair<std::size_t, std::size_t>>;  // beginnings and ends
LQ_DATA_API std::u16string WithoutForeignText(std::u16string_view text,
                                              TextSpans* pragmas = nullptr);

}  // namespace lq::host
