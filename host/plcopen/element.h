// A piece of an XML document: an element with its attributes and children, or a run of text.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lq::host::plcopen {

// Names: an element of the PLCopen namespaces has its local name, one of XHTML "xhtml:" in front of
// it, any other "{namespace}" in front of it. A text has no name. All texts are UTF-8.
struct Element {
    std::string name;
    std::string text;  // of a text
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<std::unique_ptr<Element>> children;  // blank texts are kept in XHTML only
    const Element* parent = nullptr;                 // null for the root
    uint32_t line = 0;                               // both from 1, in the file
    uint32_t column = 0;

    bool IsText() const { return name.empty(); }
    bool IsXhtml() const { return name.starts_with("xhtml:"); }

    // The attribute's value; empty when it is missing.
    std::string_view Attribute(std::string_view attribute) const;
    // The first child of that name, or null.
    const Element* Child(std::string_view child) const;
    // The first child that is no text, or null.
    const Element* FirstElement() const;
};

// "project/types/pous/pou[Main]/body": the element's ancestors and itself, with their names.
std::string PathOf(const Element& element);

// Space, tab, line feed and carriage return.
bool IsBlank(std::string_view text);
std::string_view Trim(std::string_view text);

// All text below the element, a paragraph a line, without blanks around it.
std::string Prose(const Element& element);

// The text below the element as it stands, with the place of its beginning.
struct Code {
    std::string text;
    uint32_t line = 0;
    uint32_t column = 0;
    std::int64_t breaks = 0;  // line breaks in the text
};
Code CodeOf(const Element& element);

}  // namespace lq::host::plcopen
