// Runs of characters that the scanner passes: what belongs to one, and how to hurry through it.
//
// Hurry gets to the first character that does not belong, or to one before it, in steps of several;
// it reads up to kReadAhead characters from where it stands, whatever lies there. The end of input
// belongs to no run.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/chars.h"
#include "lq_data/scanner.h"
#include "scanner/char_classes.h"

#ifdef __SSE2__
#include <bit>
#include <emmintrin.h>
#endif

namespace lq::scanner {

constexpr int32_t kReadAhead = 16;

// Words go sixteen characters a step: the exit of a loop over single ones is a guess for most
// words. This took 3 % off the time of a token. Blanks are too short for it: it made them slower.
#ifdef __SSE2__

inline __m128i IsBetween(__m128i text, char16_t first, char16_t last) {
    const __m128i offset = _mm_sub_epi16(text, _mm_set1_epi16(static_cast<int16_t>(first)));
    const __m128i beyond =
        _mm_subs_epu16(offset, _mm_set1_epi16(static_cast<int16_t>(last - first)));
    return _mm_cmpeq_epi16(beyond, _mm_setzero_si128());
}
// Of ASCII.
inline __m128i IsWord(__m128i text) {
    const __m128i lower = _mm_or_si128(text, _mm_set1_epi16(0x20));
    const __m128i isUnderscore = _mm_cmpeq_epi16(text, _mm_set1_epi16(u'_'));
    return _mm_or_si128(_mm_or_si128(IsBetween(lower, u'a', u'z'), IsBetween(text, u'0', u'9')),
                        isUnderscore);
}
inline const char16_t* HurryThroughWord(const char16_t* at) {
    for (;; at += kReadAhead) {
        const auto* text = reinterpret_cast<const __m128i*>(at);
        const __m128i low = IsWord(_mm_loadu_si128(text));
        const __m128i high = IsWord(_mm_loadu_si128(text + 1));
        const auto words = static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
        if (words != 0xFFFF) {
            return at + std::countr_one(words);
        }
    }
}

// To one of the marks or the end of input, eight characters a step.
template <char16_t... kMarks>
const char16_t* HurryToMarks(const char16_t* at) {
    const auto isSame = [](__m128i text, char16_t c) {
        return _mm_cmpeq_epi16(text, _mm_set1_epi16(static_cast<int16_t>(c)));
    };
    for (;; at += 8) {
        const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        __m128i hits = isSame(text, Scanner::kEndOfInput);
        ((hits = _mm_or_si128(hits, isSame(text, kMarks))), ...);
        const auto bytes = static_cast<uint32_t>(_mm_movemask_epi8(hits));
        if (bytes != 0) {
            return at + std::countr_zero(bytes) / 2;
        }
    }
}

#else

inline const char16_t* HurryThroughWord(const char16_t* at) {
    return at;
}
template <char16_t... kMarks>
const char16_t* HurryToMarks(const char16_t* at) {
    return at;
}

#endif

struct WordRun {
    static bool Belongs(char16_t c) {
        return chars::IsAscii(c) ? Is(c, kWord) : chars::IsLetter(c);
    }
    static const char16_t* Hurry(const char16_t* at) { return HurryThroughWord(at); }
};

// Four blanks a step: indentation.
struct BlankRun {
    static bool Belongs(char16_t c) { return Is(c, kBlank); }
    static const char16_t* Hurry(const char16_t* at) {
        constexpr uint64_t kFourBlanks = 0x0020002000200020;
        for (;; at += 4) {
            uint64_t four;
            std::memcpy(&four, at, sizeof(four));
            if (four != kFourBlanks) {
                return at;
            }
        }
    }
};

struct CommentRun {
    static bool Belongs(char16_t c) { return !Is(c, kCommentMark); }
    static const char16_t* Hurry(const char16_t* at) { return HurryToMarks<u'*', u'\n'>(at); }
};

struct StringRun {
    static bool Belongs(char16_t c) { return !Is(c, kStringMark); }
    static const char16_t* Hurry(const char16_t* at) {
        return HurryToMarks<u'\'', u'"', u'$', u',', u'\n'>(at);
    }
};

// Numbers are short.
struct DigitsRun {
    unsigned digitClass;
    bool Belongs(char16_t c) const { return Is(c, digitClass); }
    static const char16_t* Hurry(const char16_t* at) { return at; }
};

}  // namespace lq::scanner
