// Storage sizes. Types whose size the language fixes are answered at once; the others have a slot
// in a table that the environment may replace, and whose slots are atomic.

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <iterator>

#include "lq_data/detail/in_order.h"
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

// Sizes that the language fixes; 0 for a type whose size lies in the table of slots.
constexpr lq::RowOf<IEC_TYPE, uint32_t> kFixedSizes[] = {
    {IEC_BOOL, 0},   {IEC_SINT, 1}, {IEC_INT, 2},   {IEC_DINT, 4},  {IEC_LINT, 8},
    {IEC_USINT, 1},  {IEC_UINT, 2}, {IEC_UDINT, 4}, {IEC_ULINT, 8}, {IEC_REAL, 4},
    {IEC_LREAL, 8},  {IEC_TIME, 0}, {IEC_DATE, 0},  {IEC_TOD, 0},   {IEC_DT, 0},
    {IEC_STRING, 0}, {IEC_BYTE, 1}, {IEC_WORD, 2},  {IEC_DWORD, 4}, {IEC_LWORD, 8},
};
static_assert(lq::AreInOrder(kFixedSizes, IEC_LAST_ELEMENTARY));

// A slot of the table. No slot depends on another: relaxed access is enough.
class Slot {
  public:
    explicit Slot(std::size_t index) : size_(IecTypeSize::Size[index]) {}
    uint32_t Get() const { return size_.load(std::memory_order_relaxed); }
    void Set(uint32_t size) { size_.store(size, std::memory_order_relaxed); }

  private:
    std::atomic_ref<uint32_t> size_;
};

}  // namespace

constinit uint32_t IecTypeSize::Size[18] = {LQ_SIZE_SLOTS(LQ_SLOT_SIZE)};

#undef LQ_SLOT_SIZE
#undef LQ_SLOT_TYPE
#undef LQ_SIZE_SLOTS

IecTypeSize::IecTypeSize(uint32_t (*sizes)[18]) {
    for (std::size_t i = 0; sizes && i < std::size(*sizes); ++i) {
        Slot(i).Set((*sizes)[i]);
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
    Slot(static_cast<std::size_t>(slot)).Set(size);
    return 1;
}

uint32_t IecTypeSize::Get(IEC_TYPE id) {
    if (IsElementaryType(id) && kFixedSizes[id].value != 0) {
        return kFixedSizes[id].value;
    }
    const VAL_IDX slot = TypeToIdx(id);
    return slot == NO_SLOT ? 0 : Slot(static_cast<std::size_t>(slot)).Get();
}
