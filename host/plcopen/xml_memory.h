// The memory of the XML parser.
#pragma once

#include <cstdint>

#include <expat.h>

namespace lq::host::plcopen {

// That of the C library. A shortage is counted and reported when it happens: of some the parser
// makes a fault of the document, such as "unbound prefix".
extern const XML_Memory_Handling_Suite kXmlMemory;

// How often memory was short in this process.
std::uint32_t XmlShortages() noexcept;

}  // namespace lq::host::plcopen
