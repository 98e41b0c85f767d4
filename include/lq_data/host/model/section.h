// The declaration sections and their keywords.
#pragma once

#include <cstdint>
#include <string>

#include "lq_data/export.h"

namespace lq::host {

enum class Scope : uint8_t {
    kLocal,
    kTemp,
    kInput,
    kInExt,
    kOutput,
    kInOut,
    kExternal,
    kGlobal,
    kConfig,
    kAccess
};

// What a declaration may say of its section beyond the keyword that it is given.
inline constexpr unsigned kMarkConstant = 1;
inline constexpr unsigned kMarkRetain = 2;
inline constexpr unsigned kMarkNonRetain = 4;
inline constexpr unsigned kMarkPersistent = 8;
inline constexpr unsigned kMarkReadOnly = 16;  // of VAR_ACCESS, as the next
inline constexpr unsigned kMarkReadWrite = 32;

struct Section {
    Scope scope = Scope::kLocal;
    bool constant = false;
    bool retain = false;
    uint8_t marks = 0;  // those that were written; no keyword comes from them

    friend bool operator==(const Section&, const Section&) = default;
};

// The section keyword, such as "VAR_INPUT". Never null.
LQ_DATA_API const char16_t* KeywordOf(Section section);

// The section as the language writes it, marks and all: "VAR_GLOBAL CONSTANT RETAIN", "VAR_TEMP".
LQ_DATA_API std::u16string WrittenSection(Section section);

// The section itself when a keyword exists for it, else the nearest that has one: the constant
// attribute is given up before the retain attribute, except for inputs, where it is kept.
LQ_DATA_API Section NearestSection(Section section);

}  // namespace lq::host
