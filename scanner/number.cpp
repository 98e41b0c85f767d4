// Decimal and based integers, the integer before a range, and reals.
#include "scanner/number_text.h"
#include "scanner/recogniser.h"

using namespace lq::chars;

namespace {

struct Base {
    const char16_t* prefix;
    bool (*isDigit)(char16_t);
    unsigned bitsPerDigit;
    const char16_t* largest;  // in the digits of the base
};

// "f" sorts above every other hex digit, so no text of eight digits exceeds the last one.
constexpr Base kBases[] = {
    {u"2", IsBinary, 1, u"11111111111111111111111111111111"},
    {u"8", IsOctal, 3, u"37777777777"},
    {u"16", IsHex, 4, u"ffffffff"},
};

constexpr char16_t kLargestDecimal[] = u"4294967295";

// Leading zeros do not count.
const Base* FindBase(const char16_t* prefix) {
    while (*prefix == u'0') {
        ++prefix;
    }
    for (const Base& base : kBases) {
        if (Equal(base.prefix, prefix)) {
            return &base;
        }
    }
    return nullptr;
}

// Leading zeros count: the texts are compared, not the numbers.
bool IsWithin(const char16_t* digits, const char16_t* largest) {
    const size_t length = Length(digits);
    const size_t limit = Length(largest);
    return length < limit || (length == limit && Compare(digits, largest) <= 0);
}

}  // namespace

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
    DigitsText(0);
    if (!IsWithin(s_.valueBuf, kLargestDecimal)) {
        return Fail(SE_DECIMAL);
    }
    Finish(TK_INTEGER, lq::scanner::ToWrappedInt(s_.valueBuf));
}

void Recogniser::RangeStart() {
    Next();
    DigitsText(0);  // the conversion stops at the points
    Finish(TK_RANGE_START, lq::scanner::ToWrappedInt(s_.valueBuf));
}

void Recogniser::BasedNumber() {
    const int32_t prefixLength = TextSoFar(0);
    lq::scanner::RemoveUnderscores(s_.valueBuf);
    const Base* base = FindBase(s_.valueBuf);
    Next();
    if (!base || !base->isDigit(Current()) || !Digits(base->isDigit)) {
        return Fail(SE_BASED);
    }
    DigitsText(prefixLength + 1);
    if (!IsWithin(s_.valueBuf, base->largest)) {
        return Fail(SE_BASED);
    }
    uint32_t value = 0;
    for (const char16_t* p = s_.valueBuf; *p != 0; ++p) {
        value = (value << base->bitsPerDigit) | HexValue(*p);
    }
    Finish(TK_BASED_INTEGER, value);
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
    const int32_t length = DigitsText(0);
    Finish(TK_REAL, lq::scanner::ToDouble(s_.valueBuf, length));
}
