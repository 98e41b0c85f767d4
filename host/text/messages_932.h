// The messages in Japanese.
#pragma once

#include <span>
#include <string_view>

namespace lq::host {

// Two formats of the same words.
struct Translation {
    std::string_view english;
    std::string_view translated;
};

extern const std::span<const Translation> kMessages932;  // sorted, as the next
extern const std::span<const Translation> kCheckMessages932;
extern const std::span<const Translation> kRuleMessages932;

}  // namespace lq::host
