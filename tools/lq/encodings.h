// The code pages that texts may be said to be written in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lq_data/host/text/utf.h"

namespace lq::tool {

inline constexpr struct {
    std::string_view name;
    host::TextEncoding encoding;
} kCodePages[] = {
    {"windows-1252", host::TextEncoding::kWindows1252},
    {"shift_jis", host::TextEncoding::kShiftJis},
};

// The code page of a name, nothing for any other text.
inline std::optional<host::TextEncoding> CodePageOf(std::string_view name) {
    for (const auto& page : kCodePages) {
        if (page.name == name) {
            return page.encoding;
        }
    }
    return {};
}

}  // namespace lq::tool
