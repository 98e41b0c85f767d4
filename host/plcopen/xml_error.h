// What is not well-formed in a document, in words.
#pragma once

#include <string_view>

#include <expat.h>

namespace lq::host::plcopen {

// In the user's language, but for rare errors, which only expat has words for.
std::string_view XmlErrorText(XML_Error error) noexcept;

}  // namespace lq::host::plcopen
