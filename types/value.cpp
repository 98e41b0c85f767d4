// Typed constants: each number goes into the smallest class that holds it, by tables of limits. And
// the checked arithmetic of their integers, on sign and magnitude.

#include <cstring>
#include <limits>

#include "lq_data/detail/chars.h"
#include "lq_data/detail/in_order.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"
#include "types/payload.h"

using lq::types::kMsOffset;
using lq::types::LoadInteger;
using lq::types::Store;

LQ_IMPLEMENT_DYNAMIC(Time, CObject, nullptr)

namespace {

// The largest magnitude of a class.
struct ClassLimit {
    uint32_t magnitude;
    VAL_TYPE type;
};

constexpr uint32_t kMax32 = std::numeric_limits<uint32_t>::max();

constexpr ClassLimit kNonNegative[] = {{127, VT_SINT},         {255, VT_USINT},
                                       {32767, VT_INT},        {65535, VT_UINT},
                                       {2147483647u, VT_DINT}, {kMax32, VT_UDINT}};
constexpr ClassLimit kNegative[] = {{128, VT_SINT}, {32768, VT_INT}, {2147483648u, VT_DINT}};
constexpr ClassLimit kBitString[] = {
    {1, VT_BOOL}, {255, VT_USINT}, {65535, VT_UINT}, {kMax32, VT_UDINT}};

// Bytes of the payload.
constexpr lq::RowOf<VAL_TYPE, uint32_t> kPayloadSizes[] = {
    {VT_BOOL, 4},  {VT_SINT, 1}, {VT_USINT, 1}, {VT_INT, 4},    {VT_UINT, 2},  {VT_DINT, 4},
    {VT_UDINT, 4}, {VT_LINT, 8}, {VT_ULINT, 8}, {VT_REAL, 4},   {VT_LREAL, 8}, {VT_TIME, 12},
    {VT_DATE, 4},  {VT_TOD, 8},  {VT_DT, 12},   {VT_STRING, 0},
};
static_assert(lq::AreInOrder(kPayloadSizes, VT_STRING));

uint32_t PayloadSize(VAL_TYPE type) {
    return type <= VT_STRING ? kPayloadSizes[type].value : 0;
}

template <std::size_t N>
VAL_TYPE SmallestClass(const ClassLimit (&limits)[N], uint32_t magnitude) {
    for (const ClassLimit& limit : limits) {
        if (magnitude <= limit.magnitude) {
            return limit.type;
        }
    }
    return VT_NONE;
}

// Stores the low bytes of `number` in the width of the value's class.
int StoreInteger(Val& v, uint32_t number) {
    switch (PayloadSize(v.type)) {
        case 1:
            Store(v, static_cast<uint8_t>(number));
            return 1;
        case 2:
            Store(v, static_cast<uint16_t>(number));
            return 1;
        case 4:
            Store(v, number);
            return 1;
        default:
            return 0;
    }
}

}  // namespace

int AddSub32(int op, ANY_INT_32& a, ANY_INT_32 b) {
    const bool negative = (b.sign != 0) != (op != 0);
    int fits = 1;
    if (negative == (a.sign != 0)) {
        a.magnitude += b.magnitude;
        fits = a.magnitude >= b.magnitude ? 1 : 0;
    } else if (a.magnitude >= b.magnitude) {
        a.magnitude -= b.magnitude;
    } else {
        a.magnitude = b.magnitude - a.magnitude;
        a.sign = negative ? 1 : 0;
    }
    if (a.magnitude == 0) {
        a.sign = 0;
    }
    return fits;
}

int Mul32(ANY_INT_32& a, ANY_INT_32 b) {
    const uint64_t product = uint64_t{a.magnitude} * b.magnitude;
    a.magnitude = static_cast<uint32_t>(product);
    return product <= std::numeric_limits<uint32_t>::max() ? 1 : 0;
}

int Val::Set(ANY_INT_32 v) {
    if (v.sign == 0) {
        type = SmallestClass(kNonNegative, v.magnitude);
        return StoreInteger(*this, v.magnitude);
    }
    type = SmallestClass(kNegative, v.magnitude);
    return StoreInteger(*this, 0u - v.magnitude);
}

int Val::Set(uint32_t v) {
    type = SmallestClass(kBitString, v);
    return StoreInteger(*this, v);
}

int Val::Set(uint16_t kind, Time& t, int neg) {
    const bool negative = (t.sign == -1) != (neg != 0);
    const uint32_t unsignedDays = static_cast<uint32_t>(t.days);
    const int32_t days = static_cast<int32_t>(negative ? 0u - unsignedDays : unsignedDays);
    const double ms = negative ? -t.ms : t.ms;
    switch (kind) {
        case TK_TIME:
        case TK_DATE_AND_TIME:
            type = kind == TK_TIME ? VT_TIME : VT_DT;
            Store(*this, days);
            Store(*this, ms, kMsOffset);
            return 1;
        case TK_DATE:
            type = VT_DATE;
            Store(*this, days);
            return 1;
        case TK_TIME_OF_DAY:
            type = VT_TOD;
            Store(*this, ms);
            return 1;
        default:
            type = VT_NONE;
            return 0;
    }
}

int Val::Get(ANY_INT_32& out) {
    out.sign = 0;
    int64_t number = 0;
    if (!LoadInteger(*this, number)) {
        return 0;
    }
    out.sign = number < 0 ? 1 : 0;
    out.magnitude = static_cast<uint32_t>(number < 0 ? -number : number);
    return 1;
}

void* Val::GetValBuf(Val& v, uint32_t& size) {
    size = PayloadSize(v.type);
    return size != 0 ? v.payload : nullptr;
}

Lit::~Lit() {
    lq::Release(text);
}

int Lit::SetText(const char16_t* source) {
    char16_t* copy = nullptr;
    if (source) {
        const std::size_t count = lq::chars::Length(source) + 1;
        copy = lq::AllocateArray<char16_t>(count);
        if (!copy) {
            return 0;
        }
        std::memcpy(copy, source, count * sizeof(char16_t));
    }
    lq::Release(text);
    text = copy;
    return 1;
}
