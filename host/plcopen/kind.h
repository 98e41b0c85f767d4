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

// Names: an element of the PLCopen namespaces has its local name, one of IEC 61131-10 that of the
// PLCopen element which holds the same, else "iec:" in front of its own, one of XHTML "xhtml:" in
// front of it, any other "{namespace}" in front of it; an attribute of no namespace has its local
// name.
struct Kind {
    Kind() = default;  // of a text, which has no name
    Kind(const Kind* parent, std::string_view expatName);

    // The kind of the elements of that name below this one's. Only so many kinds are kept as are
    // searched quickly, more than a PLCopen document has; one beyond them is made in `own` and
    // lives no longer than that.
    Kind& Below(std::string_view expatName, std::unique_ptr<Kind>& own);
    const AttributeKind& Attribute(std::string_view expatName,
                                   std::unique_ptr<AttributeKinds>& own);

    std::string source;  // the name as expat tells it
    std::string name;
    const Row* row = nullptr;          // null when the schema does not know the element
    Verdict verdict = Verdict::kRead;  // below its parent

    // The handler's: which of its steps reads these elements, or that it has not looked yet.
    static constexpr uint8_t kNotLooked = 0xFF;
    mutable uint8_t step = kNotLooked;

  private:
    std::vector<std::unique_ptr<Kind>> below_;
    AttributeKinds attributes_;
};

extern const Kind kTextKind;

inline constexpr char kNamespaceEnd = ' ';  // in expat's names; no namespace name holds one

}  // namespace lq::host::plcopen
