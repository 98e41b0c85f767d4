// A hash of 16-bit text that takes four characters in a step, and one of its upper-case form. Both
// multiply by 2^64 over the golden ratio (Knuth, The Art of Computer Programming, 6.4).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/chars.h"

namespace lq::text_hash {

namespace detail {

constexpr std::size_t kStep = sizeof(uint64_t) / sizeof(char16_t);

inline uint64_t Load(const char16_t* text) {
    uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

// Fewer than four characters, as if zeros followed.
inline uint64_t LoadRest(const char16_t* text, std::size_t count) {
    char16_t characters[kStep] = {};
    for (std::size_t i = 0; i < count; ++i) {
        characters[i] = text[i];
    }
    return Load(characters);
}

constexpr uint64_t Everywhere(uint64_t character) {
    return character * 0x0001000100010001u;
}

// The upper-case forms of four characters; all four at once when they are ASCII.
inline uint64_t ToUpper(uint64_t word) {
    if ((word & Everywhere(0xFF80)) == 0) {
        const uint64_t fromA = word + Everywhere(0x8000 - u'a');
        const uint64_t behindZ = word + Everywhere(0x8000 - u'z' - 1);
        return word - ((fromA & ~behindZ & Everywhere(0x8000)) >> 10);  // 0x20 each
    }
    char16_t characters[kStep];
    std::memcpy(characters, &word, sizeof word);
    for (char16_t& c : characters) {
        c = chars::ToUpper(c);
    }
    return Load(characters);
}

inline uint64_t Mix(uint64_t hash, uint64_t word) {
    constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;
    hash = (hash ^ word) * kMultiplier;
    return hash ^ hash >> 32;
}

// The words are those from the start and the last four characters, which may overlap them. Two
// words go side by side, as a multiplication waits for the one before it.
template <typename Convert>
uint32_t Hash(const char16_t* text, std::size_t length, Convert convert) {
    uint64_t hash = length;
    uint64_t other = 0;
    if (length < kStep) {
        other = convert(LoadRest(text, length));
    } else {
        const char16_t* const last = text + length - kStep;
        for (; last - text > static_cast<std::ptrdiff_t>(kStep); text += 2 * kStep) {
            hash = Mix(hash, convert(Load(text)));
            other = Mix(other, convert(Load(text + kStep)));
        }
        if (text < last) {
            hash = Mix(hash, convert(Load(text)));
        }
        other ^= convert(Load(last));
    }
    return static_cast<uint32_t>(Mix(Mix(hash, other), 0));
}

}  // namespace detail

inline uint32_t OfText(const char16_t* text, std::size_t length) {
    return detail::Hash(text, length, [](uint64_t word) { return word; });
}

// Equal for texts that differ in case only.
inline uint32_t OfName(const char16_t* text, std::size_t length) {
    return detail::Hash(text, length, [](uint64_t word) { return detail::ToUpper(word); });
}

}  // namespace lq::text_hash
