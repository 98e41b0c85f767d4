// Sets of types as bitsets: which types hold a constant, and which one type stands for a set.

#include "types/ranges.h"

#include <atomic>
#include <bit>
#include <cstddef>
#include <limits>

#include "frame/per_thread.h"
#include "lq_data/env/lq_useradapt.h"
#include "lq_data/types.h"

namespace {

constexpr uint32_t Bit(IEC_TYPE elementary) {
    return 1u << elementary;
}

// Each of the types `bits` holds magnitudes up to the limit.
struct TypeLimit {
    uint32_t magnitude;
    uint32_t bits;
};

constexpr TypeLimit kNonNegative[] = {
    {0xFFFFFFFF, Bit(IEC_LINT) | Bit(IEC_ULINT) | Bit(IEC_UDINT)},
    {0x7FFFFFFF, Bit(IEC_DINT)},
    {0xFFFF, Bit(IEC_UINT)},
    {0x7FFF, Bit(IEC_INT)},
    {0xFF, Bit(IEC_USINT)},
    {0x7F, Bit(IEC_SINT)},
    {1, Bit(IEC_BOOL)},
};
constexpr TypeLimit kNegative[] = {
    {0x80000000, Bit(IEC_DINT)}, {0x8000, Bit(IEC_INT)}, {0x80, Bit(IEC_SINT)}};
constexpr TypeLimit kBitString[] = {
    {0xFFFFFFFF, Bit(IEC_LWORD) | Bit(IEC_DWORD)}, {0xFFFF, Bit(IEC_WORD)}, {0xFF, Bit(IEC_BYTE)}};

template <std::size_t N>
uint32_t TypesThatHold(const TypeLimit (&limits)[N], uint32_t magnitude) {
    uint32_t bits = 0;
    for (const TypeLimit& limit : limits) {
        bits |= magnitude <= limit.magnitude ? limit.bits : 0;
    }
    return bits;
}

// The questions that this thread is asking, a bit each: the adapter may classify constants itself,
// and while its answer is awaited it counts as 0.
LQ_THREAD_LOCAL uint64_t asking = 0;

// A site's answer, fetched on its first use and kept. Threads that need it at the same time all
// ask; the first answer to arrive is everyone's.
class AdapterAnswer {
  public:
    constexpr AdapterAnswer(uint32_t question, uint64_t bit) : question_(question), bit_(bit) {}

    bool IsZero() {
        int64_t value = value_.load(std::memory_order_relaxed);
        if (value == kNone && (asking & bit_) == 0) {
            asking |= bit_;
            const int32_t answer = ProcessUserDLLMessage(nullptr, LQ_WM_USER, question_, 0);
            asking &= ~bit_;
            if (value_.compare_exchange_strong(value, answer, std::memory_order_relaxed)) {
                value = answer;
            }
        }
        return value == 0 || value == kNone;
    }

  private:
    static constexpr int64_t kNone = std::numeric_limits<int64_t>::min();

    uint32_t question_;
    uint64_t bit_;
    std::atomic<int64_t> value_ = kNone;
};

constinit AdapterAnswer intAsBits(LQ_ASK_INT_AS_BITS, 1);
constinit AdapterAnswer bitsAsInt(LQ_ASK_BITS_AS_INT, 2);

// The types that are no elementary type, and their sets, in the order of preference.
struct TypeSet {
    IEC_TYPE type;
    uint32_t bits;
};
constexpr TypeSet kMarkers[] = {
    {IEC_ARRAY, TB_ARRAY},
    {IEC_STRUCTURE, TB_STRUCTURE},
    {IEC_FUNCTION_BLOCK, TB_FUNCTION_BLOCK},
    {IEC_DUT_OR_FB, TB_DUT_OR_FB},
};
constexpr TypeSet kGenericSets[] = {
    {IEC_ANY, TB_ANY},         {IEC_ANY_NUM, TB_ANY_NUM}, {IEC_ANY_REAL, TB_ANY_REAL},
    {IEC_ANY_INT, TB_ANY_INT}, {IEC_ANY_BIT, TB_ANY_BIT}, {IEC_ANY_DATE, TB_ANY_DATE},
    {IEC_ANY16, TB_ANY16},     {IEC_ANY32, TB_ANY32},     {IEC_ANY_SIMPLE, TB_ANY_SIMPLE},
    {IEC_ANY_DUT, TB_ANY_DUT}, {IEC_ANY_FB, TB_ANY_FB},
};

// What a non-empty set inside `mask` is called: a single type of `singles` by its own name, any
// other set `otherwise`. The first mask that holds the set decides.
struct Family {
    uint32_t mask;
    uint32_t singles;
    IEC_TYPE otherwise;
};
constexpr Family kFamilies[] = {
    {TB_ANY_INT, TB_ANY_INT, IEC_ANY_INT},
    {TB_ANY_REAL, TB_ANY_REAL, IEC_ANY_REAL},
    {TB_ANY_NUM, 0, IEC_ANY_NUM},
    {TB_ANY_BIT, TB_ANY_BIT & ~Bit(IEC_LWORD), IEC_ANY_BIT},
    {TB_ANY16, 0, IEC_ANY16},
    {TB_ANY32, 0, IEC_ANY32},
    {Bit(IEC_STRING), 0, IEC_STRING},
    {TB_ANY_DATE, Bit(IEC_DATE) | Bit(IEC_TOD), IEC_ANY_DATE},
    {Bit(IEC_TIME), 0, IEC_TIME},
    {TB_ANY_SIMPLE, 0, IEC_ANY_SIMPLE},
    {TB_ANY_DUT, 0, IEC_ANY_DUT},
    {TB_ANY_FB, 0, IEC_ANY_FB},
    {TB_ARRAY, 0, IEC_ARRAY},
};

// The types by the codes of the second numbering, which the types of variables have.
struct VarType {
    int32_t code;
    uint32_t bits;
};
constexpr VarType kVarTypes[] = {
    {1, Bit(IEC_BOOL)},  {2, Bit(IEC_INT)},  {3, Bit(IEC_DINT)},      {4, Bit(IEC_WORD)},
    {5, Bit(IEC_DWORD)}, {6, Bit(IEC_REAL)}, {7, Bit(IEC_TIME)},      {8, Bit(IEC_STRING)},
    {9, TB_STRUCTURE},   {10, TB_ARRAY},     {15, TB_FUNCTION_BLOCK}, {16, Bit(IEC_LREAL)},
    {50, TB_ANY},        {51, TB_ANY_NUM},   {52, TB_ANY_BIT},        {53, TB_ANY_INT},
    {54, TB_ANY16},      {55, TB_ANY32},     {56, TB_ANY_SIMPLE},     {57, TB_ANY_REAL},
};

constexpr IEC_TYPE kBySize[] = {IEC_BOOL, IEC_SINT, IEC_USINT, IEC_BYTE,  IEC_INT,  IEC_UINT,
                                IEC_WORD, IEC_DINT, IEC_UDINT, IEC_DWORD, IEC_REAL, IEC_LREAL};

}  // namespace

namespace lq::types {

uint32_t IntegerSet(bool negative, uint32_t magnitude, bool asBits) {
    if (negative) {
        return TypesThatHold(kNegative, magnitude);
    }
    return TypesThatHold(kNonNegative, magnitude) |
           (asBits ? TypesThatHold(kBitString, magnitude) : 0);
}

uint32_t BitStringSet(uint32_t value, bool asIntegers) {
    const uint32_t bits = TypesThatHold(kBitString, value);
    if (!asIntegers) {
        return bits;
    }
    return bits | Bit(IEC_DINT) | ((bits & Bit(IEC_WORD)) != 0 ? Bit(IEC_INT) : 0);
}

}  // namespace lq::types

void DCE_GetIntConstRange(int neg, uint32_t magnitude, uint32_t* bits) {
    const bool negative = neg != 0;
    *bits = lq::types::IntegerSet(negative, magnitude, !negative && !intAsBits.IsZero());
}

void DCE_GetRealConstRange(double value, uint32_t* bits) {
    using Float = std::numeric_limits<float>;
    const bool holds = value == 0.0 || (value >= static_cast<double>(Float::min()) &&
                                        value <= static_cast<double>(Float::max()));
    *bits = Bit(IEC_LREAL) | (holds ? Bit(IEC_REAL) : 0);
}

void DCE_GetBOHConstRange(int32_t value, uint32_t* bits) {
    *bits = lq::types::BitStringSet(static_cast<uint32_t>(value), bitsAsInt.IsZero());
}

int32_t MapTypeToBitset(int type) {
    if (IsElementaryType(type)) {
        return static_cast<int32_t>(Bit(static_cast<IEC_TYPE>(type)));
    }
    for (const TypeSet& set : kMarkers) {
        if (set.type == type) {
            return static_cast<int32_t>(set.bits);
        }
    }
    for (const TypeSet& set : kGenericSets) {
        if (set.type == type) {
            return static_cast<int32_t>(set.bits);
        }
    }
    return 0;
}

IEC_TYPE MapBitsetToType(int32_t bits) {
    const uint32_t set = static_cast<uint32_t>(bits);
    if ((set & TB_ANY_SIMPLE) != 0) {
        return static_cast<IEC_TYPE>(std::countr_zero(set));
    }
    for (const TypeSet& marker : kMarkers) {
        if ((set & marker.bits) != 0) {
            // The marker of either kind is no type of its own.
            return marker.type == IEC_DUT_OR_FB ? IEC_ANY_DUT : marker.type;
        }
    }
    return IEC_NO_TYPE;
}

IEC_TYPE MapAllBitsetToType(int32_t bits) {
    const uint32_t set = static_cast<uint32_t>(bits);
    for (const Family& family : kFamilies) {
        if (set != 0 && (set & ~family.mask) == 0) {
            const bool single = std::has_single_bit(set) && (set & family.singles) != 0;
            return single ? MapBitsetToType(bits) : family.otherwise;
        }
    }
    return (set & TB_ANY) != 0 ? IEC_ANY : IEC_NO_TYPE;
}

int32_t MapVarTypeToBitset(int32_t varType) {
    for (const VarType& entry : kVarTypes) {
        if (entry.code == varType) {
            return static_cast<int32_t>(entry.bits);
        }
    }
    return 0;
}

void MapBitsetToMinSize(int32_t* bits) {
    for (const IEC_TYPE type : kBySize) {
        if ((static_cast<uint32_t>(*bits) & Bit(type)) != 0) {
            *bits = static_cast<int32_t>(Bit(type));
            return;
        }
    }
}
