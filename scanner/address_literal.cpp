// Direct addresses: %IX0.1, %QW10, %M3.
#include <algorithm>
#include <iterator>

#include "lq_data/detail/in_order.h"
#include "scanner/recogniser.h"

namespace {

template <typename Enumeration>
using LetterOf = lq::RowOf<Enumeration, char16_t>;

constexpr LetterOf<tagLocation> kLocations[] = {
    {LOC_INPUT, u'I'}, {LOC_OUTPUT, u'Q'}, {LOC_MEMORY, u'M'}};
static_assert(lq::AreInOrder(kLocations, LOC_MEMORY));

constexpr LetterOf<tagSize> kSizes[] = {
    {SIZE_BIT, u'X'}, {SIZE_BYTE, u'B'}, {SIZE_WORD, u'W'}, {SIZE_DWORD, u'D'}, {SIZE_LWORD, u'L'}};
static_assert(lq::AreInOrder(kSizes, SIZE_LWORD));

// The row of that letter; null when there is none.
template <typename Enumeration, std::size_t kCount>
const LetterOf<Enumeration>* FindLetter(const LetterOf<Enumeration> (&rows)[kCount], char16_t c) {
    const auto* const row =
        std::find_if(std::begin(rows), std::end(rows),
                     [c](const auto& candidate) { return candidate.value == c; });
    return row != std::end(rows) ? row : nullptr;
}

void RemoveUnderscores(char16_t* text) {
    char16_t* kept = text;
    for (const char16_t* p = text; *p != 0; ++p) {
        if (*p != u'_') {
            *kept++ = *p;
        }
    }
    *kept = 0;
}

}  // namespace

template <typename Cursor>
Found Recogniser<Cursor>::DirectAddress() {
    Next();
    const auto* const location = FindLetter(kLocations, Current());
    if (!location) {
        return Fail(SE_ADDRESS);
    }
    Next();
    const auto* const size = FindLetter(kSizes, Current());
    if (size) {
        Next();
    }
    for (;;) {
        if (!IsA(lq::scanner::kDecimal) || !PassDigits(lq::scanner::kDecimal, [](char16_t) {})) {
            return Fail(SE_ADDRESS);
        }
        if (!At(u'.')) {
            break;
        }
        Next();
    }
    const int32_t lettersLength = size ? 3 : 2;
    cursor_.CopyText(s_.valueBuf, lettersLength, 0);
    RemoveUnderscores(s_.valueBuf);
    s_.address.location = location->id;
    s_.address.size = size ? size->id : SIZE_BIT;
    s_.address.text = s_.valueBuf;
    return Finish(TK_ADDRESS, &s_.address);
}

LQ_RECOGNISES(DirectAddress);
