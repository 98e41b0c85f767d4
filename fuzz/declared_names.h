// What a source text declares, found without the reader: the names in front of ":" in the sections
// and type blocks of a text whose tokens are beyond doubt.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lq::fuzz {

struct DeclaredName {
    std::u16string_view name;
    uint32_t line;
    uint32_t blockLine;  // of the word that begins its section or type block
};

// Nothing of a text with comments, strings, pragmas or characters beyond ASCII, or with units that
// the model has no place for: where those end is what a reader has to find out.
std::vector<DeclaredName> DeclaredNames(std::u16string_view text);

}  // namespace lq::fuzz
