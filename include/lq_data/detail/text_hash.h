// Not part of the interface: what headers of the host layer are compiled with.
//
// A hash of 16-bit text that takes eight characters in a step, and the same of its upper-case form.
//
// Texts come from strangers, who must not be able to choose many that have one hash and so make a
// table slow. So the hash is keyed with a secret of the process. Every step takes two words of the
// text, adds a secret to each and multiplies the sums: the family NH of UMAC (Black, Halevi,
// Krawczyk, Krovetz, Rogaway: UMAC, Fast and Secure Message Authentication, 1999), in which two
// texts, whoever chose them, have one hash under one seed of 2^64. The steps are chained as in
// wyhash (Wang Yi, 2019): the halves of the product are laid over each other and become a secret of
// the next step.
//
// The chaining costs some of that certainty: counted with words of 4 to 8 bits, the best chosen
// pair of texts has one hash under one seed of 2^(0.6 n), for words of n bits. With 64 bits that is
// still so rare that nobody gets many texts of one hash but by chance.
//
// Hashes differ from process to process. They decide where something is found, never in which order
// a caller sees it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "lq_data/detail/chars.h"
#include "lq_data/export.h"

namespace lq::text_hash {

// What is found out in one pass over a text that ends in a terminator.
struct Measured {
    std::size_t length;
    uint32_t hash;
};

// The secret of the process, one for all its libraries. It is drawn when the library is loaded,
// before its static objects and those of any module that needs it, and stays.
struct Seed {
    uint64_t word;
    uint64_t state;
    uint64_t length;
};
LQ_DATA_API extern Seed seed;

// Sets a seed made of `number`, for tests and benchmarks, which must take the same way every time.
// To be called only while there are no hash tables, text pools or projects and no other threads.
LQ_DATA_API void SetSeed(uint64_t number) noexcept;

namespace detail {

constexpr std::size_t kStep = sizeof(uint64_t) / sizeof(char16_t);

inline uint64_t Load(const char16_t* text) {
    uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

// Loads fewer than four characters, as if zeros followed.
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

constexpr bool IsAscii(uint64_t word) {
    return (word & Everywhere(0xFF80)) == 0;
}

// The upper-case forms of four characters of ASCII.
constexpr uint64_t AsciiToUpper(uint64_t word) {
    const uint64_t fromA = word + Everywhere(0x8000 - u'a');
    const uint64_t behindZ = word + Everywhere(0x8000 - u'z' - 1);
    return word - ((fromA & ~behindZ & Everywhere(0x8000)) >> 10);  // 0x20 each
}

inline uint64_t ToUpper(uint64_t word) {
    if (IsAscii(word)) {
        return AsciiToUpper(word);
    }
    char16_t characters[kStep];
    std::memcpy(characters, &word, sizeof word);
    for (char16_t& c : characters) {
        c = chars::ToUpper(c);
    }
    return Load(characters);
}

// The product of two 64-bit numbers, its halves laid over each other: no half of a factor decides
// alone about any part of it.
inline uint64_t Fold(uint64_t a, uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide{a} * b;
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

inline uint64_t Step(uint64_t state, uint64_t first, uint64_t second) {
    return Fold(first + seed.word, second + state);
}

// Multiplies once more. Without that, the hashes of names with running numbers crowd together under
// one seed of fifty.
inline uint32_t Finish(uint64_t state, std::size_t length) {
    return static_cast<uint32_t>(Fold(state, seed.length + length));
}

// The last step. `unpaired` is the word before the last four characters that belongs to no step, or
// 0; the four may overlap it.
template <typename Convert>
uint32_t Finish(const char16_t* text, std::size_t length, uint64_t state, uint64_t unpaired,
                Convert convert) {
    const uint64_t last =
        convert(length < kStep ? LoadRest(text, length) : Load(text + length - kStep));
    return Finish(Step(state, last, unpaired), length);
}

template <typename Convert>
uint32_t Hash(const char16_t* text, std::size_t length, Convert convert) {
    uint64_t state = seed.state;
    std::size_t at = 0;
    for (; at + 2 * kStep < length; at += 2 * kStep) {
        state = Step(state, convert(Load(text + at)), convert(Load(text + at + kStep)));
    }
    const uint64_t unpaired = at + kStep < length ? convert(Load(text + at)) : 0;
    return Finish(text, length, state, unpaired, convert);
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

// Hash of a text that ends in a terminator, whose length is found on the way. Where a loop over a
// text ends cannot be predicted; one pass has one such end, measuring and hashing would have two.
template <typename Convert>
Measured MeasureAndHash(const char16_t* text, Convert convert) {
    uint64_t state = seed.state;
    const char16_t* at = text;
    const char16_t* end = *at == 0 ? at : EndBehind(at);
    uint64_t unpaired = 0;
    while (!end) {
        unpaired = convert(Load(at));
        at += kStep;
        end = EndBehind(at);
        if (end) {
            break;
        }
        state = Step(state, unpaired, convert(Load(at)));
        unpaired = 0;
        at += kStep;
        end = EndBehind(at);
    }
    const auto length = static_cast<std::size_t>(end - text);
    return {length, Finish(text, length, state, unpaired, convert)};
}

inline constexpr auto kAsItIs = [](uint64_t word) { return word; };
inline constexpr auto kUpper = [](uint64_t word) { return ToUpper(word); };

[[gnu::noinline]] inline uint32_t OfAnyName(const char16_t* text, std::size_t length) {
    return Hash(text, length, kUpper);
}
[[gnu::noinline]] inline Measured OfAnyName(const char16_t* text) {
    return MeasureAndHash(text, kUpper);
}

}  // namespace detail

inline uint32_t OfText(const char16_t* text, std::size_t length) {
    return detail::Hash(text, length, detail::kAsItIs);
}
inline Measured OfText(const char16_t* text) {
    return detail::MeasureAndHash(text, detail::kAsItIs);
}

// The hash of a name: equal for texts that differ in case only. Names are taken for ASCII, and
// those that are not are hashed once more: then no step of the others needs a test and a call.
inline uint32_t OfName(const char16_t* text, std::size_t length) {
    uint64_t all = 0;
    const uint32_t hash = detail::Hash(text, length, [&all](uint64_t word) {
        all |= word;
        return detail::AsciiToUpper(word);
    });
    return detail::IsAscii(all) ? hash : detail::OfAnyName(text, length);
}
inline Measured OfName(const char16_t* text) {
    uint64_t all = 0;
    const Measured name = detail::MeasureAndHash(text, [&all](uint64_t word) {
        all |= word;
        return detail::AsciiToUpper(word);
    });
    return detail::IsAscii(all) ? name : detail::OfAnyName(text);
}

// Hash of a text in bytes, such as UTF-8.
inline uint32_t OfBytes(const char* bytes, std::size_t count) {
    uint64_t words[2];
    uint64_t state = seed.state;
    std::size_t left = count;
    for (; left > sizeof words; left -= sizeof words, bytes += sizeof words) {
        std::memcpy(words, bytes, sizeof words);
        state = detail::Step(state, words[0], words[1]);
    }
    words[0] = words[1] = 0;
    std::memcpy(words, bytes, left);
    return detail::Finish(detail::Step(state, words[0], words[1]), count);
}

}  // namespace lq::text_hash
