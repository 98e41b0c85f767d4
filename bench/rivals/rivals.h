// Scanners that only classify: the same token rules over 8-bit text, nothing kept of a token but
// its kind. A keyword is an identifier to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lq::bench {

// By TOKEN_KIND.
constexpr std::size_t kKinds = 18;
struct KindCounts {
    uint64_t of[kKinds] = {};

    uint64_t Total() const {
        uint64_t total = 0;
        for (const uint64_t count : of) {
            total += count;
        }
        return total;
    }
};

// `text` ends in two zero characters, which it holds nowhere else; it is as before afterwards.
KindCounts CountWithFlex(std::string& text);
// The same; one zero character suffices.
KindCounts CountWithRe2c(const std::string& text);

}  // namespace lq::bench
