// Decimal and based integers, the integer before a range, and reals.
#pragma once

#include "scanner/digits.h"
#include "scanner/recogniser.h"

namespace lq::scanner {

struct Base {
    uint32_t base;
    int bitsOfDigit;
    unsigned digitClass;
    int32_t maxDigits;
};

inline constexpr Base kBases[] = {{16, 4, kHex, 8}, {8, 3, kOctal, 11}, {2, 1, kBinary, 32}};

// The base that the number before "#" names, or null. Leading zeros do not count.
inline const Base* FindBase(const Digits& prefix) {
    for (const Base& base : kBases) {
        if (base.base == prefix.value && !prefix.isBeyond) {
            return &base;
        }
    }
    return nullptr;
}

// Whether the number fits 32 bits and has at most so many digits. Leading zeros count as digits
// here.
inline bool IsWithin(const Digits& digits, int32_t maxDigits) {
    return digits.count <= maxDigits && digits.value <= UINT32_MAX;
}

}  // namespace lq::scanner

template <typename Cursor>
inline Found Recogniser<Cursor>::Number() {
    constexpr int32_t kMaxDecimalDigits = 10;
    Digits digits;
    if (!Decimal(digits)) {
        return Fail(SE_DECIMAL);
    }
    if (At(u'#')) {
        return BasedNumber(digits);
    }
    if (At(u'.')) {
        return Apart().RangeOrReal(digits);
    }
    const int32_t length = cursor_.CopySoFar(s_.textBuf, 1);
    if (!EndsWord(Current()) && HostAccepts(length)) {
        return Apart().Word();
    }
    if (!lq::scanner::IsWithin(digits, kMaxDecimalDigits)) {
        return Fail(SE_DECIMAL);
    }
    if (cursor_.IsElsewhere()) {
        return kElsewhere;
    }
    cursor_.CompleteCopy(s_.textBuf, length);
    s_.token.SetFirst(static_cast<uint32_t>(digits.value));
    return Deliver(TK_INTEGER);
}

template <typename Cursor>
inline Found Recogniser<Cursor>::BasedNumber(const Digits& prefix) {
    const lq::scanner::Base* const base = lq::scanner::FindBase(prefix);
    Next();
    if (!base || !IsA(base->digitClass)) {
        return Fail(SE_BASED);
    }
    Digits digits;
    const bool isWhole = PassDigits(base->digitClass, [&](char16_t c) {
        digits.value = (digits.value << base->bitsOfDigit) + lq::scanner::DigitValue(c);
        ++digits.count;
    });
    if (!isWhole || !lq::scanner::IsWithin(digits, base->maxDigits)) {
        return Fail(SE_BASED);
    }
    return Finish(TK_BASED_INTEGER, static_cast<uint32_t>(digits.value));
}

template <typename Cursor>
[[gnu::noinline, gnu::flatten]] Found Recogniser<Cursor>::RangeOrReal(Digits whole) {
    Next();
    if (At(u'.')) {
        Next();
        return Finish(TK_RANGE_START, static_cast<uint32_t>(whole.value));
    }
    const bool hasFraction = IsA(lq::scanner::kDecimal);
    Digits fraction;
    Digits exponent;
    bool isNegative = false;
    if (hasFraction && !Decimal(fraction)) {
        return Fail(SE_REAL);
    }
    if (At(u'e') || At(u'E')) {
        Next();
        isNegative = At(u'-');
        if (isNegative || At(u'+')) {
            Next();
        }
        if (!IsA(lq::scanner::kDecimal) || !Decimal(exponent)) {
            return Fail(SE_REAL);
        }
    } else if (!hasFraction) {
        return Fail(SE_REAL);
    }
    double value;
    const auto power = static_cast<int32_t>(exponent.value);
    const bool isShort = exponent.count <= lq::scanner::kSurelyInRange;
    if (!isShort ||
        !lq::scanner::ToDoubleExactly(whole, fraction, isNegative ? -power : power, value)) {
        const std::u16string_view text = cursor_.EndedText(s_.valueBuf);
        value = lq::scanner::ToDouble(text.data(), static_cast<int32_t>(text.size()));
    }
    return Finish(TK_REAL, value);
}
