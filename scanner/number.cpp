// Decimal and based integers, the integer before a range, and reals.
#include <iterator>

#include "scanner/number_text.h"
#include "scanner/recogniser.h"
#include "scanner/short_token.h"

using namespace lq::chars;

namespace {

using lq::scanner::DigitRun;

struct Base {
    uint32_t base;
    unsigned digitClass;
    int32_t maxDigits;
};

constexpr Base kBases[] = {
    {2, lq::scanner::kBinary, 32},
    {8, lq::scanner::kOctal, 11},
    {16, lq::scanner::kHex, 8},
};

// The base that digits and underscores before "#" name. Leading zeros do not count.
const Base* FindBase(const char16_t* prefix, int32_t length) {
    const uint32_t largest = std::end(kBases)[-1].base;
    uint32_t number = 0;
    for (int32_t i = 0; i < length && number <= largest; ++i) {
        number = prefix[i] == u'_' ? number : number * 10 + (prefix[i] - u'0');
    }
    for (const Base& base : kBases) {
        if (base.base == number) {
            return &base;
        }
    }
    return nullptr;
}

// Leading zeros count: a number of too many digits is too large whatever it is.
bool IsWithin(const DigitRun& digits, int32_t maxDigits) {
    return digits.count <= maxDigits && digits.value <= UINT32_MAX;
}

}  // namespace

Recogniser::Text Recogniser::BeginningText() {
    int32_t length;
    if (const char16_t* text = reader_.InPlace(length)) {
        return {text, length};
    }
    length = TextSoFar(0);
    return {s_.valueBuf, length};
}

Recogniser::Text Recogniser::TokenText(int32_t offset) {
    int32_t length;
    if (const char16_t* text = reader_.InPlace(length)) {
        return {text + offset, length - offset};
    }
    length = reader_.CopyText(s_.valueBuf, Scanner::kBufferSize, offset, 0);
    return {s_.valueBuf, length};
}

int32_t Recogniser::DigitsText(int32_t offset) {
    reader_.CopyText(s_.valueBuf, Scanner::kBufferSize, offset, 0);
    return lq::scanner::RemoveUnderscores(s_.valueBuf);
}

void Recogniser::Number() {
    if (!DecimalDigits()) {
        return Fail(SE_DECIMAL);
    }
    const char16_t c = Current();
    if (c == u'#') {
        return BasedNumber();
    }
    if (c == u'.') {
        Next();
        if (IsDigit(Current())) {
            return Fraction();
        }
        if (At(u'.')) {
            return RangeStart();
        }
        if (At(u'e') || At(u'E')) {
            return Exponent();
        }
        return Fail(SE_REAL);
    }
    if (!IsSpace(c) && c != kEnd && HostAccepts()) {
        return Identifier();
    }
    FinishDecimal();
}

void Recogniser::FinishDecimal() {
    const Text text = TokenText(0);
    const DigitRun digits = lq::scanner::ReadDigits(text.begin, text.length, 10);
    if (!IsWithin(digits, lq::scanner::kMaxDecimalDigits)) {
        return Fail(SE_DECIMAL);
    }
    Finish(TK_INTEGER, static_cast<uint32_t>(digits.value));
}

void Recogniser::RangeStart() {
    Next();
    const Text text = TokenText(0);  // the digits stop at the points
    const DigitRun digits = lq::scanner::ReadDigits(text.begin, text.length, 10);
    Finish(TK_RANGE_START, static_cast<uint32_t>(digits.value));
}

void Recogniser::BasedNumber() {
    const Text prefix = BeginningText();
    const Base* base = FindBase(prefix.begin, prefix.length);
    Next();
    if (!base || !IsA(base->digitClass) || !Digits(base->digitClass)) {
        return Fail(SE_BASED);
    }
    const Text text = TokenText(prefix.length + 1);
    const DigitRun digits = lq::scanner::ReadDigits(text.begin, text.length, base->base);
    if (!IsWithin(digits, base->maxDigits)) {
        return Fail(SE_BASED);
    }
    Finish(TK_BASED_INTEGER, static_cast<uint32_t>(digits.value));
}

void Recogniser::Fraction() {
    if (!DecimalDigits()) {
        return Fail(SE_REAL);
    }
    if (At(u'e') || At(u'E')) {
        return Exponent();
    }
    FinishReal();
}

void Recogniser::Exponent() {
    Next();
    if (At(u'+') || At(u'-')) {
        Next();
    }
    if (!IsDigit(Current()) || !DecimalDigits()) {
        return Fail(SE_REAL);
    }
    FinishReal();
}

void Recogniser::FinishReal() {
    const Text text = TokenText(0);
    Finish(TK_REAL, lq::scanner::ToDouble(text.begin, text.length));
}
