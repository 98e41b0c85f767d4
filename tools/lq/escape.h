// Makes texts of inputs harmless for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace lq::tool {

// Text as it fits one line: line breaks, control characters, and all that a reader does not see or
// that turns the direction of writing become escapes: \n, \x07, \u202E, \U000E0001. `text` is
// UTF-8; bytes that are none are escaped, too.
std::string OneLine(std::string_view text);
void AppendOneLine(std::string& out, std::string_view text);

// A JSON document with the same characters escaped, but for line breaks, which are its own.
std::string HarmlessJson(std::string_view document);

}  // namespace lq::tool
