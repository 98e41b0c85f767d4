#include "scanner/digits.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <iterator>
#include <locale.h>
#include <stdlib.h>

#include "lq_data/detail/chars.h"

namespace lq::scanner {

namespace {

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int32_t kLargestPower = std::size(kPowersOfTen) - 1;
constexpr int32_t kExactDigits = 15;

// from_chars leaves a number beyond the range unset; strtod, under a locale with a decimal point,
// says on which side of the range it lies.
double ToDoubleBeyondRange(const char* text) {
    // Nothing has to be freed: the "C" locale is a constant of the C library.
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", locale_t{});
    // Without it, for want of memory, the process's own locale has to do.
    return plain != locale_t{} ? strtod_l(text, nullptr, plain) : strtod(text, nullptr);
}

}  // namespace

// An integer of 15 digits and a power of ten up to 10^22 are both exact in a double, so that the
// one operation gives the nearest double to the result (Clinger: How to Read Floating Point Numbers
// Accurately, PLDI 1990).
bool ToDoubleExactly(Digits whole, Digits fraction, int32_t power, double& value) {
    const int32_t digits = whole.count + fraction.count;
    power -= fraction.count;
    if (FLT_EVAL_METHOD != 0 || digits == 0 || digits > kExactDigits || power > kLargestPower ||
        power < -kLargestPower) {
        return false;
    }
    const auto scale = static_cast<uint64_t>(kPowersOfTen[fraction.count]);
    const auto exact = static_cast<double>(whole.value * scale + fraction.value);
    value = power < 0 ? exact / kPowersOfTen[-power] : exact * kPowersOfTen[power];
    return true;
}

double ToDouble(const char16_t* text, int32_t length) {
    char narrow[2049];
    const int32_t limit = std::min<int32_t>(length, sizeof(narrow) - 1);
    int32_t count = 0;
    for (int32_t i = 0; i < limit; ++i) {
        if (text[i] != u'_') {
            narrow[count++] = chars::IsAscii(text[i]) ? static_cast<char>(text[i]) : '?';
        }
    }
    narrow[count] = 0;
    double value = 0.0;
    const auto result = std::from_chars(narrow, narrow + count, value);
    return result.ec == std::errc::result_out_of_range ? ToDoubleBeyondRange(narrow) : value;
}

}  // namespace lq::scanner
