// What the elements of one name in one place have in common. It is found once: a large document has
// a million elements, of some hundred kinds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lq::host::plcopen {

struct Row;  // of the schema

enum class Verdict {
    kRead,
    kSkip,     // layout and the like: passed over by design
    kNotKept,  // it has no place in the project
    kUnknown,
};

// The attributes of one name of the elements of one kind.
struct AttributeKind {
    std::string source;  // the name as expat tells it
    std::string name;
    Verdict verdict;
};
using AttributeKinds = std::vector<std::unique_ptr<AttributeKind>>;

// Names: an element of the PLCopen namespaces has its local name, one of XHTML "xhtml:" in front of
// it, any other "{namespace}" in front of it; an attribute of no namespace has its local name.
struct Kind {
    Kind() = default;  // of a text, which has no name
    Kind(const Kind* parent, std::string_view expatName);

    // The kind of the elements of that name below this one's. What finds no room here, in documents
    // that are hardly PLCopen's, becomes the caller's own.
    Kind& Below(std::string_view expatName, std::unique_ptr<Kind>& own);
    const AttributeKind& Attribute(std::string_view expatName,
                                   std::unique_ptr<AttributeKinds>& own);

    std::string source;  // the name as expat tells it
    std::string name;
    const Row* row = nullptr;          // null when the schema does not know the element
    Verdict verdict = Verdict::kRead;  // below its parent

    // How the handler reads the elements, once it has looked.
    static constexpr uint8_t kNotLooked = 0xFF;
    mutable uint8_t step = kNotLooked;

  private:
    std::vector<std::unique_ptr<Kind>> below_;
    AttributeKinds attributes_;
};

extern const Kind kTextKind;

inline constexpr char kNamespaceEnd = ' ';  // in expat's names; no namespace name holds one

}  // namespace lq::host::plcopen
