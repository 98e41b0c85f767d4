// Reading the files that commands are given; "-" is standard input.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lq::tool {

class InputBuffer;

// The name of an input in messages: the path, or "(standard input)".
std::string DisplayName(const std::string& path);

// The whole file, or what is left of it. Throws CommandError as an InputBuffer does.
std::string ReadInput(const std::string& path, uint64_t limit);
std::string ReadInput(InputBuffer& source, const std::string& path);

// The text of a source file: UTF-8 with or without byte order mark, or UTF-16. Throws CommandError
// with the place of the first byte that is no text.
std::u16string DecodeInput(const std::string& path, std::string_view bytes);

// The text of an argument. Throws CommandError when it is no UTF-8.
std::u16string DecodeArgument(const std::string& argument);

// Whether the bytes begin as an XML document does, rather than as an image of tables.
bool LooksLikeXml(std::string_view bytes);

}  // namespace lq::tool
