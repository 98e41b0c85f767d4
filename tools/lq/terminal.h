// The two streams of the tool, where they are terminals.
#pragma once

#include <cstddef>
#include <string>

namespace lq::tool {

// Values are file descriptors.
enum class Stream : int { kResults = 1, kMessages = 2 };

bool IsTerminal(Stream stream);

// Whether the stream is a terminal that can do more than print one line after the other.
bool CanControl(Stream stream);

// The width of a terminal, at least 1; that of most when the terminal does not say.
size_t Columns(Stream stream);

// The text, in bold where the stream shows that and NO_COLOR does not forbid it.
std::string Bold(Stream stream, const std::string& text);

}  // namespace lq::tool
