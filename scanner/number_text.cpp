#include "scanner/number_text.h"

#include <algorithm>
#include <charconv>
#include <locale.h>
#include <stdlib.h>

#include "frame/chars.h"

namespace lq::scanner {

int32_t RemoveUnderscores(char16_t* text) {
    int32_t kept = 0;
    for (const char16_t* p = text; *p != 0; ++p) {
        if (*p != u'_') {
            text[kept++] = *p;
        }
    }
    text[kept] = 0;
    return kept;
}

uint32_t ToWrappedInt(const char16_t* text) {
    uint32_t value = 0;
    for (; chars::IsDigit(*text); ++text) {
        value = value * 10 + (*text - u'0');
    }
    return value;
}

namespace {

// from_chars leaves a number beyond the range unset; strtod, under a locale with a decimal point,
// says on which side of the range it lies.
double ToDoubleBeyondRange(const char* text) {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", locale_t{});
    return plain != locale_t{} ? strtod_l(text, nullptr, plain) : strtod(text, nullptr);
}

}  // namespace

double ToDouble(const char16_t* text, int32_t length) {
    char narrow[2049];
    const int32_t count = std::min<int32_t>(length, sizeof(narrow) - 1);
    std::transform(text, text + count, narrow,
                   [](char16_t c) { return c < 0x80 ? static_cast<char>(c) : '?'; });
    narrow[count] = 0;
    double value = 0.0;
    const auto result = std::from_chars(narrow, narrow + count, value);
    return result.ec == std::errc::result_out_of_range ? ToDoubleBeyondRange(narrow) : value;
}

}  // namespace lq::scanner
