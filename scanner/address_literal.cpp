// Direct addresses: %IX0.1, %QW10, %M3.
#include "scanner/recogniser.h"

namespace {

// Letters in the order of tagLocation and of tagSize.
constexpr char16_t kLocations[] = u"IQM";
constexpr char16_t kSizes[] = u"XBWDL";

// The place of `c` in `letters`, or -1.
int32_t IndexOf(const char16_t* letters, char16_t c) {
    for (int32_t i = 0; letters[i] != 0; ++i) {
        if (letters[i] == c) {
            return i;
        }
    }
    return -1;
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
    const int32_t location = IndexOf(kLocations, Current());
    if (location < 0) {
        return Fail(SE_ADDRESS);
    }
    Next();
    const int32_t size = IndexOf(kSizes, Current());
    if (size >= 0) {
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
    const int32_t lettersLength = size >= 0 ? 3 : 2;
    cursor_.CopyText(s_.valueBuf, lettersLength, 0);
    RemoveUnderscores(s_.valueBuf);
    s_.address.location = static_cast<tagLocation>(location);
    s_.address.size = size >= 0 ? static_cast<tagSize>(size) : SIZE_BIT;
    s_.address.text = s_.valueBuf;
    return Finish(TK_ADDRESS, &s_.address);
}

LQ_RECOGNISES(DirectAddress);
