// A hash of 16-bit text that takes four characters in a step, and one of its upper-case form. Both
// multiply by 2^64 over the golden ratio (Knuth, The Art of Computer Programming, 6.4).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/chars.h"

namespace lq::text_hash {

// What is found out in one pass over a text that ends in a terminator.
struct Measured {
    std::size_t length;
    uint32_t hash;
};

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

// Apart, so that the way of ASCII has no call to prepare for.
[[gnu::noinline]] inline uint64_t AnyToUpper(uint64_t word) {
    char16_t characters[kStep];
    std::memcpy(characters, &word, sizeof word);
    for (char16_t& c : characters) {
        c = chars::ToUpper(c);
    }
    return Load(characters);
}

// The upper-case forms of four characters; all four at once when they are ASCII.
inline uint64_t ToUpper(uint64_t word) {
    if ((word & Everywhere(0xFF80)) != 0) {
        return AnyToUpper(word);
    }
    const uint64_t fromA = word + Everywhere(0x8000 - u'a');
    const uint64_t behindZ = word + Everywhere(0x8000 - u'z' - 1);
    return word - ((fromA & ~behindZ & Everywhere(0x8000)) >> 10);  // 0x20 each
}

inline uint64_t Mix(uint64_t hash, uint64_t word) {
    constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;
    hash = (hash ^ word) * kMultiplier;
    return hash ^ hash >> 32;
}

// The words are those from the start and the last four characters, which may overlap them. Two
// words go side by side, as a multiplication waits for the one before it.
struct Lanes {
    uint64_t even = 0;
    uint64_t odd = 1;  // so that words that trade places make a difference
};

template <typename Convert>
uint32_t Finish(const char16_t* text, std::size_t length, Lanes lanes, Convert convert) {
    const uint64_t last =
        convert(length < kStep ? LoadRest(text, length) : Load(text + length - kStep));
    return static_cast<uint32_t>(Mix(Mix(lanes.even, lanes.odd ^ last), length));
}

template <typename Convert>
uint32_t Hash(const char16_t* text, std::size_t length, Convert convert) {
    Lanes lanes;
    std::size_t at = 0;
    for (; at + 2 * kStep < length; at += 2 * kStep) {
        lanes.even = Mix(lanes.even, convert(Load(text + at)));
        lanes.odd = Mix(lanes.odd, convert(Load(text + at + kStep)));
    }
    if (at + kStep < length) {
        lanes.even = Mix(lanes.even, convert(Load(text + at)));
    }
    return Finish(text, length, lanes, convert);
}

// The terminator, when it is one of the four characters behind `at`; else null.
inline const char16_t* EndBehind(const char16_t* at) {
    for (std::size_t i = 1; i <= kStep; ++i) {
        if (at[i] == 0) {
            return at + i;
        }
    }
    return nullptr;
}

// Hash of a text that ends in a terminator, whose length is found on the way: where a loop ends is
// a guess for the processor, and this makes one guess of two.
template <typename Convert>
Measured MeasureAndHash(const char16_t* text, Convert convert) {
    Lanes lanes;
    const char16_t* at = text;
    const char16_t* end = *at == 0 ? at : EndBehind(at);
    while (!end) {
        lanes.even = Mix(lanes.even, convert(Load(at)));
        at += kStep;
        end = EndBehind(at);
        if (end) {
            break;
        }
        lanes.odd = Mix(lanes.odd, convert(Load(at)));
        at += kStep;
        end = EndBehind(at);
    }
    const auto length = static_cast<std::size_t>(end - text);
    return {length, Finish(text, length, lanes, convert)};
}

inline constexpr auto kAsItIs = [](uint64_t word) { return word; };
inline constexpr auto kUpper = [](uint64_t word) { return ToUpper(word); };

}  // namespace detail

inline uint32_t OfText(const char16_t* text, std::size_t length) {
    return detail::Hash(text, length, detail::kAsItIs);
}
inline Measured OfText(const char16_t* text) {
    return detail::MeasureAndHash(text, detail::kAsItIs);
}

// Equal for texts that differ in case only.
inline uint32_t OfName(const char16_t* text, std::size_t length) {
    return detail::Hash(text, length, detail::kUpper);
}
inline Measured OfName(const char16_t* text) {
    return detail::MeasureAndHash(text, detail::kUpper);
}

}  // namespace lq::text_hash
