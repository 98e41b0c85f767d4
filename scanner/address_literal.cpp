// Direct addresses: %IX0.1, %QW10, %M3.
#include "scanner/recogniser.h"

using namespace lq::chars;

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

}  // namespace

void Recogniser::DirectAddress() {
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
        if (!IsDigit(Current()) || !DecimalDigits()) {
            return Fail(SE_ADDRESS);
        }
        if (!At(u'.')) {
            break;
        }
        Next();
    }
    const int32_t lettersLength = size >= 0 ? 3 : 2;
    DigitsText(lettersLength);
    s_.address.location = static_cast<tagLocation>(location);
    s_.address.size = size >= 0 ? static_cast<tagSize>(size) : SIZE_BIT;
    s_.address.text = s_.valueBuf;
    Finish(TK_ADDRESS, &s_.address);
}
