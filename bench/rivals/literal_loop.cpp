// Literals by hand: what the loop passes is copied and counted in as it goes by.
#include <array>

#include "bench/rivals/rivals.h"
#include "lq_data/detail/chars.h"
#include "lq_data/scanner.h"

namespace lq::bench {

using chars::IsDigit;

namespace {

// The value of each character as a hex digit.
constexpr uint8_t kNoDigit = 16;
constexpr std::array<uint8_t, 128> kDigits = [] {
    std::array<uint8_t, 128> digits{};
    digits.fill(kNoDigit);
    for (uint8_t i = 0; i < 16; ++i) {
        digits[static_cast<std::size_t>("0123456789ABCDEF"[i])] = i;
        digits[static_cast<std::size_t>("0123456789abcdef"[i])] = i;
    }
    return digits;
}();

}  // namespace

RivalToken LiteralLoop::GetToken() {
    const char16_t* at = at_;
    char16_t* space = space_;
    for (; *at == u' '; ++at) {
        *space++ = *at;
    }
    *space = 0;
    at_ = at;
    char16_t* to = text_;
    uint64_t value = 0;
    int32_t kind = TK_ERROR;
    if (IsDigit(*at)) {
        kind = Number(to, value);
    } else if ((*at == u'T' || *at == u't') && at[1] == u'#') {
        kind = Duration(to);
        value = reinterpret_cast<uintptr_t>(&time_);
    } else if (*at == 0) {
        kind = TK_EOF;
    }
    *to = 0;
    return {kind, 1, text_, space_, value};
}

int32_t LiteralLoop::Number(char16_t*& to, uint64_t& value) {
    constexpr int32_t kMostDigits = 10;
    const char16_t* at = at_;
    uint64_t number = 0;
    int32_t count = 0;
    for (;;) {
        for (; IsDigit(*at); ++at, ++count) {
            *to++ = *at;
            number = number * 10 + (*at - u'0');
        }
        if (*at != u'_' || !IsDigit(at[1])) {
            break;
        }
        *to++ = *at++;
    }
    at_ = at;
    value = number;
    if (*at == u'#') {
        return Based(to, value);
    }
    return count <= kMostDigits && number <= UINT32_MAX && *at != u'_' ? TK_INTEGER : TK_ERROR;
}

int32_t LiteralLoop::Based(char16_t*& to, uint64_t& value) {
    const uint64_t base = value;
    if (base != 2 && base != 8 && base != 16) {
        return TK_ERROR;
    }
    const char16_t* at = at_;
    *to++ = *at++;
    uint64_t number = 0;
    for (;; ++at) {
        const char16_t c = *at;
        const uint64_t digit = c < kDigits.size() ? kDigits[c] : kNoDigit;
        if (digit < base && number <= UINT32_MAX) {
            number = number * base + digit;
        } else if (c != u'_' || at[-1] == u'#' || at[-1] == u'_') {
            break;
        }
        *to++ = c;
    }
    const char16_t last = at[-1];
    at_ = at;
    value = number;
    return last != u'#' && last != u'_' && number <= UINT32_MAX ? TK_BASED_INTEGER : TK_ERROR;
}

int32_t LiteralLoop::Duration(char16_t*& to) {
    static constexpr struct {
        char16_t letter;
        int64_t ms;
        int64_t limit;
    } kUnits[] = {
        {u'd', 86'400'000, 0}, {u'h', 3'600'000, 23}, {u'm', 60'000, 59}, {u's', 1'000, 59}};
    constexpr int kMilliseconds = 4;
    const char16_t* at = at_;
    *to++ = *at++;
    *to++ = *at++;
    time_.sign = 1;
    if (*at == u'-') {
        *to++ = *at++;
        time_.sign = -1;
    }
    int64_t total = 0;
    int unit = -1;
    do {
        int64_t number = 0;
        for (; IsDigit(*at); ++at) {
            *to++ = *at;
            number = number * 10 + (*at - u'0');
        }
        const char16_t letter = *at | 0x20;
        const bool isMs = letter == u'm' && at[1] == (*at == u'm' ? u's' : u'S');
        const bool isFirst = unit < 0;
        const int last = unit;
        for (unit = 0; unit < kMilliseconds && (isMs || kUnits[unit].letter != letter); ++unit) {
        }
        const int64_t limit = isFirst                 ? INT32_MAX
                              : unit == kMilliseconds ? 999
                                                      : kUnits[unit].limit;
        if ((unit == kMilliseconds && !isMs) || (!isFirst && unit != last + 1) || number > limit) {
            at_ = at;
            return TK_ERROR;
        }
        total += unit == kMilliseconds ? number : number * kUnits[unit].ms;
        *to++ = *at++;
        if (isMs) {
            *to++ = *at++;
        } else if (*at == u'_') {
            *to++ = *at++;
        }
    } while (IsDigit(*at) && unit != kMilliseconds);
    at_ = at;
    time_.days = static_cast<int32_t>(total / kUnits[0].ms);
    time_.ms = static_cast<double>(total % kUnits[0].ms);
    return TK_TIME;
}

}  // namespace lq::bench
