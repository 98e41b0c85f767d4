// One step along the directory of a hash table: the tags of eight slots at once.
#pragma once

#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace lq::containers {

constexpr uint32_t kSlotStep = 8;
constexpr uint16_t kNoTag = 0;  // of an empty slot

// At which of the slots a search may end: a bit for each that is empty or has the tag. This one is
// for processors without SSE2, and what the tests compare the other with.
inline uint32_t PlainEndsInStep(const uint16_t* tags, uint16_t tag) {
    uint32_t ends = 0;
    for (uint32_t i = 0; i < kSlotStep; ++i) {
        ends |= uint32_t{tags[i] == tag || tags[i] == kNoTag} << i;
    }
    return ends;
}

#ifdef __SSE2__
inline uint32_t EndsInStep(const uint16_t* tags, uint16_t tag) {
    const __m128i step = _mm_loadu_si128(reinterpret_cast<const __m128i*>(tags));
    const __m128i isSame = _mm_cmpeq_epi16(step, _mm_set1_epi16(static_cast<int16_t>(tag)));
    const __m128i isEmpty = _mm_cmpeq_epi16(step, _mm_setzero_si128());
    const __m128i bytes = _mm_packs_epi16(_mm_or_si128(isSame, isEmpty), _mm_setzero_si128());
    return static_cast<uint32_t>(_mm_movemask_epi8(bytes));
}
#else
inline uint32_t EndsInStep(const uint16_t* tags, uint16_t tag) {
    return PlainEndsInStep(tags, tag);
}
#endif

}  // namespace lq::containers
