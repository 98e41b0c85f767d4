// Constants from text and to text. Reading drives a scanner over one constant; in writing, a
// duration, date or time of day is a plain count of milliseconds or seconds.

#include <bit>
#include <cmath>
#include <limits>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/frame.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"
#include "types/payload.h"

using lq::types::kMsOffset;
using lq::types::Load;
using lq::types::LoadInteger;
using lq::types::Store;

namespace {

constexpr unsigned kWideIntegerText = 10000;  // resource: what stands for a 64-bit integer
constexpr int kRealDigits = 16;
constexpr uint32_t kSecondsPerDay = 86400;
constexpr uint32_t kMsPerDay = kSecondsPerDay * 1000;
constexpr double kMsPerSecond = 1000.0;

// Truncated toward zero, modulo 2^32; 0 for what is no finite number.
uint32_t TruncateToWord(double value) {
    if (!std::isfinite(value)) {
        return 0;
    }
    constexpr double kModulus = 4294967296.0;
    return static_cast<uint32_t>(static_cast<int64_t>(std::fmod(value, kModulus)));
}

// A double beyond the range of a float becomes an infinity.
uint32_t FloatImage(double value) {
    static_assert(std::numeric_limits<float>::is_iec559);
    return std::bit_cast<uint32_t>(static_cast<float>(value));
}

}  // namespace

int Val::Set(Scanner& scanner, int unsignedOnly) {
    type = VT_NONE;
    int neg = 0;
    Token token = scanner.GetToken();
    if (token.kind == TK_OPERATOR) {
        neg = token.IsOperator(OP_MINUS) ? 1 : 0;
        if (!neg && !token.IsOperator(OP_PLUS)) {
            return 0;
        }
        token = scanner.GetToken();
        if (unsignedOnly || token.kind == TK_KEYWORD) {
            return 0;
        }
    }
    if (scanner.HasLostText()) {
        return 0;  // digits may be among what is lost
    }
    switch (token.kind) {
        case TK_INTEGER:
        case TK_BASED_INTEGER:
            return unsignedOnly ? Set(token.GetNumber()) : Set(ANY_INT_32{neg, token.GetNumber()});
        case TK_REAL:
            type = VT_LREAL;
            Store(*this, neg ? -token.GetReal() : token.GetReal());
            return 1;
        case TK_KEYWORD:
            if (!token.IsKeyword(KW_TRUE) && !token.IsKeyword(KW_FALSE)) {
                return 0;
            }
            type = VT_BOOL;
            Store(*this, uint32_t{token.IsKeyword(KW_TRUE) ? 1u : 0u});
            return 1;
        case TK_TIME:
        case TK_DATE_AND_TIME:
        case TK_DATE:
        case TK_TIME_OF_DAY:
            return Set(static_cast<uint16_t>(token.kind), *token.GetTime(), neg);
        case TK_EOF:
            return 1;
        default:
            return 0;
    }
}

int Val::Set(const char16_t* text, int unsignedOnly) {
    type = VT_NONE;
    const std::size_t length = text ? lq::chars::Length(text) : 0;
    if (length == 0 || length > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
        return 0;
    }
    const int32_t size = static_cast<int32_t>(length);
    MEMSTREAM_W stream(text, size, size, nullptr);
    Scanner* const scanner = static_cast<Scanner*>(Scanner::CreateObject());
    if (!scanner) {
        return 0;
    }
    scanner->Initialize(stream);
    if (scanner->RegisterKeyword(u"TRUE", KW_TRUE) &&
        scanner->RegisterKeyword(u"FALSE", KW_FALSE)) {
        Set(*scanner, unsignedOnly);
        if (scanner->GetToken().kind != TK_EOF) {
            type = VT_NONE;
        }
    }
    delete scanner;
    return type != VT_NONE ? 1 : 0;
}

int Val::GetCValue_LQ(CLQString* out) {
    const CResourceSwitch resources;
    uint32_t number = 0;
    switch (type) {
        case VT_BOOL:
            *out = Load<uint32_t>(*this) != 0 ? u"TRUE" : u"FALSE";
            break;
        case VT_SINT:
        case VT_INT:
        case VT_DINT:
        case VT_TIME:
            GetAnyNumberValue(number);
            out->Format(u"%ld", static_cast<int32_t>(number));
            break;
        case VT_USINT:
        case VT_UINT:
        case VT_UDINT:
        case VT_DATE:
        case VT_TOD:
        case VT_DT:
            GetAnyNumberValue(number);
            out->Format(u"%lu", number);
            break;
        case VT_LINT:
        case VT_ULINT:
            out->LoadStringW(kWideIntegerText);
            return 0;
        case VT_REAL:
            out->_gcvt(static_cast<double>(Load<float>(*this)), kRealDigits);
            break;
        case VT_LREAL:
            out->_gcvt(Load<double>(*this), kRealDigits);
            break;
        case VT_STRING:
        case VT_NONE:
            out->Empty();
            return 0;
        default:
            return 1;
    }
    return out->HasFailed() ? 0 : 1;
}

int Val::GetAnyNumberValue(uint32_t& out) {
    int64_t integer = 0;
    if (LoadInteger(*this, integer)) {
        out = static_cast<uint32_t>(integer);
        return 1;
    }
    switch (type) {
        case VT_BOOL:
        case VT_REAL:
            out = Load<uint32_t>(*this);
            return 1;
        case VT_LREAL:
            out = FloatImage(Load<double>(*this));
            return 1;
        case VT_TIME:
            out =
                Load<uint32_t>(*this) * kMsPerDay + TruncateToWord(Load<double>(*this, kMsOffset));
            return 1;
        case VT_DATE:
            out = Load<uint32_t>(*this) * kSecondsPerDay;
            return 1;
        case VT_TOD:
            out = TruncateToWord(Load<double>(*this));
            return 1;
        case VT_DT:
            out = Load<uint32_t>(*this) * kSecondsPerDay +
                  TruncateToWord(Load<double>(*this, kMsOffset) / kMsPerSecond);
            return 1;
        case VT_STRING:
        case VT_NONE:
            out = 0;
            return 0;
        default:
            return 1;
    }
}
