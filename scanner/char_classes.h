// What the scanner asks about every character, in one table: its inner loops are a load and a test.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

#include "frame/chars.h"
#include "lq_data/scanner.h"

namespace lq::scanner {

enum CharClass : uint16_t {
    kWord = 1,         // letters, digits, underscore: goes on an identifier
    kBlank = 2,        // blank and tab
    kCommentMark = 4,  // what a comment has to look at
    kStringMark = 8,   // what a string has to look at
    kDecimal = 16,     // digits, by base
    kBinary = 32,
    kOctal = 64,
    kHex = 128,
    kIndent = 256,    // behind a line break: the break is no token of its own
    kWordMark = 512,  // behind a word: what may belong to it in one way or another
    kSpace = 1024,
    kLineEnd = 2048,   // line feed, carriage return
    kWordLead = 4096,  // what a word begins with
    kOperatorLead = 8192,
};

constexpr std::array<uint16_t, 128> MakeCharClasses() {
    std::array<uint16_t, 128> classes{};
    const auto add = [&classes](const char16_t* characters, unsigned bits) {
        for (; *characters != 0; ++characters) {
            classes[*characters] = static_cast<uint16_t>(classes[*characters] | bits);
        }
    };
    for (char16_t c = 0; c < classes.size(); ++c) {
        if (chars::HasAsciiClass(c, chars::kLetter | chars::kDigit)) {
            classes[c] = kWord;
            if (!chars::IsDigit(c)) {
                classes[c] = kWord | kWordLead;
            }
        } else if (chars::HasAsciiClass(c, chars::kSpace)) {
            classes[c] = kSpace;
        }
    }
    add(u"_", kWord | kWordLead);
    add(u"\n\r", kLineEnd);
    add(u"+-*/&()[];:,.<>=", kOperatorLead);
    add(u" \t", kBlank);
    add(u"01", kBinary);
    add(u"01234567", kOctal);
    add(u"0123456789", kDecimal | kHex);
    add(u"ABCDEFabcdef", kHex);
    add(u"*\n", kCommentMark);
    add(u"'\"$,\n", kStringMark);
    add(u" \t\r", kIndent);
    add(u"#+-.\\", kWordMark);
    classes[Scanner::kEndOfInput] = kCommentMark | kStringMark | kIndent | kWordMark;
    return classes;
}

inline constexpr std::array<uint16_t, 128> kCharClasses = MakeCharClasses();

// None beyond ASCII.
constexpr unsigned ClassesOf(char16_t c) {
    return chars::IsAscii(c) ? kCharClasses[c] : 0u;
}
constexpr bool Is(char16_t c, unsigned classes) {
    return (ClassesOf(c) & classes) != 0;
}

// Long runs are passed in steps. What follows reads up to a step behind the characters that it
// passes, whatever stands there: BufferPair keeps room for that.

// Passes eight characters at a time while none of them is a mark.
template <char16_t... kMarks>
const char16_t* PassEights(const char16_t* at) {
    using Eight = uint16_t __attribute__((vector_size(16)));
    for (;; at += 8) {
        Eight eight;
        std::memcpy(&eight, at, sizeof(eight));
        const auto hits = ((eight == kMarks) | ...);
        uint64_t halves[2];
        std::memcpy(halves, &hits, sizeof(halves));
        if ((halves[0] | halves[1]) != 0) {
            return at;
        }
    }
}

#ifdef __SSE2__
inline __m128i IsBetween(__m128i text, char16_t first, char16_t last) {
    const __m128i offset = _mm_sub_epi16(text, _mm_set1_epi16(static_cast<int16_t>(first)));
    const __m128i beyond =
        _mm_subs_epu16(offset, _mm_set1_epi16(static_cast<int16_t>(last - first)));
    return _mm_cmpeq_epi16(beyond, _mm_setzero_si128());
}
inline __m128i IsWord(__m128i text) {
    const __m128i lower = _mm_or_si128(text, _mm_set1_epi16(0x20));
    const __m128i isLine = _mm_cmpeq_epi16(text, _mm_set1_epi16(u'_'));
    return _mm_or_si128(_mm_or_si128(IsBetween(lower, u'a', u'z'), IsBetween(text, u'0', u'9')),
                        isLine);
}
inline const char16_t* PassWordSixteens(const char16_t* at) {
    for (;; at += 16) {
        const auto* text = reinterpret_cast<const __m128i*>(at);
        const __m128i low = IsWord(_mm_loadu_si128(text));
        const __m128i high = IsWord(_mm_loadu_si128(text + 1));
        const auto held = static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
        if (held != 0xFFFF) {
            return at + std::countr_one(held);
        }
    }
}
#endif

// Passes four blanks at a time: indentation.
inline const char16_t* PassFourBlanks(const char16_t* at) {
    constexpr uint64_t kFourBlanks = 0x0020002000200020;
    for (;; at += 4) {
        uint64_t four;
        std::memcpy(&four, at, sizeof(four));
        if (four != kFourBlanks) {
            return at;
        }
    }
}

// The runs of characters that the scanner passes: which belong, and how to pass many.

struct WordRun {
    static bool Belongs(char16_t c) {
        return chars::IsAscii(c) ? (kCharClasses[c] & kWord) != 0 : chars::IsLetter(c);
    }
    static const char16_t* Hurry(const char16_t* at) { return PassWordSixteens(at); }
};
struct BlankRun {
    static bool Belongs(char16_t c) { return Is(c, kBlank); }
    static const char16_t* Hurry(const char16_t* at) { return PassFourBlanks(at); }
};
struct CommentRun {
    static bool Belongs(char16_t c) { return !Is(c, kCommentMark); }
    static const char16_t* Hurry(const char16_t* at) {
        return PassEights<u'*', u'\n', Scanner::kEndOfInput>(at);
    }
};
struct StringRun {
    static bool Belongs(char16_t c) { return !Is(c, kStringMark); }
    static const char16_t* Hurry(const char16_t* at) {
        return PassEights<u'\'', u'"', u'$', u',', u'\n', Scanner::kEndOfInput>(at);
    }
};
struct DigitsRun {
    unsigned digitClass;
    bool Belongs(char16_t c) const { return Is(c, digitClass); }
    static const char16_t* Hurry(const char16_t* at) { return at; }
};

}  // namespace lq::scanner
