// The XML side of the reader: a stream of bytes to elements, on expat.
//
// The document may be UTF-8, UTF-16, windows-1252 or Shift_JIS, as it declares (and what else expat
// reads without help). Nothing outside the
// document is ever opened. A document type is tolerated, also one that lies elsewhere; any
// declaration in it (of entities, attributes, elements, notations), a reference to an entity that
// is not predefined, in text or in an attribute, and more than kMaxDepth nested elements end the
// reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>

#include "host/plcopen/xml_element.h"

namespace lq::host::plcopen {

inline constexpr int kMaxDepth = 256;
inline constexpr int kMaxAttributes = 256;          // of an element
inline constexpr std::size_t kMaxNamespace = 1024;  // bytes of a namespace's name

enum class Treatment {
    kStream,   // its children are offered one by one and released behind their end
    kCapture,  // it is built with all that it holds
    kSkip,     // it is passed over
    kRefuse,   // the reading ends; Refusal() says why
};

class ElementHandler {
  public:
    virtual ~ElementHandler() = default;

    // The root, and each child of a streamed element, with its attributes.
    virtual Treatment Start(const Element& element) = 0;
    // The end of an element that was streamed or captured.
    virtual void End(const Element& element) = 0;
    // Text directly in a streamed element.
    virtual void StrayText(const Element& text) = 0;
    virtual std::string Refusal() const = 0;
};

struct XmlFault {
    uint32_t line = 0;
    uint32_t column = 0;
    std::string message;  // a sentence without a full stop
};

// False when the document could not be read to its end; `fault` says why. What the handler throws
// is thrown again here.
bool ParseXml(std::istream& source, ElementHandler& handler, XmlFault& fault);

}  // namespace lq::host::plcopen
