// Runs of characters that the scanner passes: what belongs to one, and how to hurry through it.
//
// Hurry gets to the first character that does not belong, or to one before it, in steps of several;
// it reads up to kReadAhead characters from where it stands, whatever lies there. The end of input
// belongs to no run.
#pragma once

#include <cstdint>

#include "lq_data/detail/chars.h"
#include "lq_data/scanner.h"
#include "scanner/char_classes.h"

#ifdef __SSE2__
#include <bit>
#include <emmintrin.h>
#endif

namespace lq::scanner {

constexpr int32_t kReadAhead = 16;

#ifdef __SSE2__

// Gets to one of the marks or to the end of input, eight characters a step.
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

template <char16_t... kMarks>
const char16_t* HurryToMarks(const char16_t* at) {
    return at;
}

#endif

// Words and blanks are too short to hurry through.
struct WordRun {
    static bool Belongs(char16_t c) {
        return chars::IsAscii(c) ? Is(c, kWord) : chars::IsLetter(c);
    }
    static const char16_t* Hurry(const char16_t* at) { return at; }
};

struct BlankRun {
    static bool Belongs(char16_t c) { return Is(c, kBlank); }
    static const char16_t* Hurry(const char16_t* at) { return at; }
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

}  // namespace lq::scanner
