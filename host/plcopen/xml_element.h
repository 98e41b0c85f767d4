// A piece of an XML document: an element with its attributes and children, or a run of text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/plcopen/kind.h"
#include "lq_data/host/text/token_columns.h"

namespace lq::host::plcopen {

// All texts are UTF-8.
struct Element {
    struct Setting {
        const AttributeKind* kind;
        std::string_view value;  // in `text`
    };

    const Kind* kind = &kTextKind;
    std::string text;  // a text's own; of an element the values of its attributes
    std::vector<Setting> attributes;
    std::vector<Element*> children;   // of a captured one; blank texts are kept in XHTML only
    const Element* parent = nullptr;  // null for the root
    uint32_t line = 0;                // both from 1, in the file
    uint32_t column = 0;
    // Of a text that is not blank: where it does not run on through the file, as behind a reference
    // or at a CDATA section. `at` is in bytes.
    std::vector<PlaceBreak> breaks;

    // Kinds that are this element's alone.
    std::unique_ptr<Kind> ownKind;
    std::unique_ptr<AttributeKinds> ownAttributes;

    std::string_view Name() const { return kind->name; }
    bool IsText() const { return Name().empty(); }
    std::string_view Text() const { return IsText() ? text : std::string_view(); }
    bool IsXhtml() const { return Name().starts_with("xhtml:"); }

    // The attribute's value; empty when it is missing.
    std::string_view Attribute(std::string_view attribute) const;
    // The first child of that name, or null.
    const Element* Child(std::string_view child) const;
    // The first child that is no text, or null.
    const Element* FirstElement() const;
};

// The elements of the document that are there at a time. They go in the opposite order of their
// coming, and what comes later takes their places and their memory.
class ElementStack {
  public:
    Element& Push();
    // Takes `element` and all that came after it away.
    void PopFrom(const Element& element);

  private:
    std::vector<std::unique_ptr<Element>> elements_;
    std::size_t used_ = 0;
};

// The attribute xsi:type, with which IEC 61131-10 says what an element holds, without a prefix.
std::string_view XsiTypeOf(const Element& element);

// "project/types/pous/pou[Main]/body": the element's ancestors and itself, with their names, long
// ones shortened.
std::string PathOf(const Element& element);

// The text, or its first 255 bytes and "...", without half a character.
std::string Shortened(std::string_view text);

// Space, tab, line feed and carriage return.
bool IsBlank(std::string_view text);
std::string_view Trim(std::string_view text);

// All text below the element, a paragraph a line, without blanks around it.
std::string Prose(const Element& element);

// The text below the element as it stands, and its places in the file. What ends a line of XHTML
// does so in the text; else lines are those of the file.
struct Code {
    std::string text;
    std::vector<PlaceBreak> breaks;  // the first of the text's beginning
};
Code CodeOf(const Element& element);

}  // namespace lq::host::plcopen
