// Storage sizes. Types whose size the language fixes are answered at once; the others have a slot
// in a table that the environment may replace.

#include <algorithm>
#include <iterator>

#include "lq_data/types.h"

namespace {

// The slots in their order: a type and its default size.
#define LQ_SIZE_SLOTS(SLOT) \
    SLOT(IEC_BOOL, 1)       \
    SLOT(IEC_TIME, 12)      \
    SLOT(IEC_DATE, 4)       \
    SLOT(IEC_TOD, 8)        \
    SLOT(IEC_DT, 12)        \
    SLOT(IEC_STRING, 256)   \
    SLOT(IEC_ANY, 12)       \
    SLOT(IEC_ANY_NUM, 8)    \
    SLOT(IEC_ANY_REAL, 8)   \
    SLOT(IEC_ANY_INT, 8)    \
    SLOT(IEC_ANY_BIT, 8)    \
    SLOT(IEC_ANY_DATE, 12)  \
    SLOT(IEC_ANY16, 4)      \
    SLOT(IEC_ANY32, 4)      \
    SLOT(IEC_ANY_SIMPLE, 8) \
    SLOT(IEC_ANY_DUT, 4)    \
    SLOT(IEC_ANY_FB, 4)     \
    SLOT(IEC_SIZE_ONLY, 4)
#define LQ_SLOT_TYPE(type, size) type,
#define LQ_SLOT_SIZE(type, size) size,

constexpr IEC_TYPE kSlotTypes[] = {LQ_SIZE_SLOTS(LQ_SLOT_TYPE)};
constexpr uint32_t kDefaultSizes[] = {LQ_SIZE_SLOTS(LQ_SLOT_SIZE)};
static_assert(std::size(kSlotTypes) == IecTypeSize::SLOT_COUNT);

// By elementary type; 0 for one whose size lies in the table.
constexpr uint32_t kFixedSizes[] = {0, 1, 2, 4, 8, 1, 2, 4, 8, 4, 8, 0, 0, 0, 0, 0, 1, 2, 4, 8};
static_assert(std::size(kFixedSizes) == IEC_LAST_ELEMENTARY + 1);

}  // namespace

constinit uint32_t IecTypeSize::Size[18] = {LQ_SIZE_SLOTS(LQ_SLOT_SIZE)};

#undef LQ_SLOT_SIZE
#undef LQ_SLOT_TYPE
#undef LQ_SIZE_SLOTS

IecTypeSize::IecTypeSize(uint32_t (*sizes)[18]) {
    if (sizes) {
        std::copy(std::begin(*sizes), std::end(*sizes), Size);
    }
}

uint32_t (*IecTypeSize::GetDftSize())[18] {
    return const_cast<uint32_t(*)[SLOT_COUNT]>(&kDefaultSizes);
}

IecTypeSize::VAL_IDX IecTypeSize::TypeToIdx(IEC_TYPE id) {
    const IEC_TYPE* const slot = std::find(std::begin(kSlotTypes), std::end(kSlotTypes), id);
    return slot == std::end(kSlotTypes) ? NO_SLOT : static_cast<VAL_IDX>(slot - kSlotTypes);
}

int IecTypeSize::Set(IEC_TYPE id, uint32_t size) {
    const VAL_IDX slot = TypeToIdx(id);
    if (slot == NO_SLOT) {
        return 0;
    }
    Size[slot] = size;
    return 1;
}

uint32_t IecTypeSize::Get(IEC_TYPE id) {
    if (IsElementaryType(id) && kFixedSizes[id] != 0) {
        return kFixedSizes[id];
    }
    const VAL_IDX slot = TypeToIdx(id);
    return slot == NO_SLOT ? 0 : Size[slot];
}
