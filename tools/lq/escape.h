// Texts of strangers, made harmless for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace lq::tool {

// Text as it fits one line: line breaks, control characters and what turns the direction of writing
// become escapes. `text` is UTF-8.
std::string OneLine(std::string_view text);

// A JSON document with the same of its characters escaped, but for line breaks, which are its own.
std::string HarmlessJson(std::string_view document);

}  // namespace lq::tool
