// The two streams of the tool, where they are terminals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lq::tool {

// Values are file descriptors.
enum class Stream : int { kResults = 1, kMessages = 2 };

bool IsTerminal(Stream stream);

// Whether the stream is a terminal that can do more than print one line after the other.
bool CanControl(Stream stream);

// The width of a terminal, at least 1; that of most when the terminal does not say.
size_t Columns(Stream stream);

// Of all streams, as the user asked for it.
enum class Color : uint8_t {
    kAuto,  // where a stream shows it and NO_COLOR does not forbid it
    kAlways,
    kNever
};
void UseColor(Color color);

// Only results, and what ends a command.
void BeQuiet();
bool IsQuiet();

// The text, in bold where that is used.
std::string Bold(Stream stream, const std::string& text);

}  // namespace lq::tool
