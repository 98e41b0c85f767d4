// The declaration sections and their keywords.
#pragma once

#include <cstdint>

#include "lq_data/export.h"

namespace lq::host {

enum class Scope : uint8_t { kLocal, kTemp, kInput, kInExt, kOutput, kInOut, kExternal, kGlobal };

struct Section {
    Scope scope = Scope::kLocal;
    bool constant = false;
    bool retain = false;

    friend bool operator==(const Section&, const Section&) = default;
};

// The section keyword, such as "VAR_INPUT". Never null.
LQ_DATA_API const char16_t* KeywordOf(Section section);

// The section itself when a keyword exists for it, else the nearest that has one: the constant
// attribute is given up before the retain attribute, except for inputs, where it is kept.
LQ_DATA_API Section NearestSection(Section section);

}  // namespace lq::host
