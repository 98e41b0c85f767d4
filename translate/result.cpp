// What a translation leaves its caller.
#include <cstring>
#include <new>
#include <utility>

#include "frame/growing.h"
#include "lq_data/detail/chars.h"
#include "lq_data/memory.h"
#include "lq_data/translate.h"

namespace lq {

static_assert(sizeof(CgTab::POU_INFO) == 5 * sizeof(uint32_t) &&
              sizeof(UnitInfo) == 5 * sizeof(uint32_t));

UnitInfo UnitInfo::From(const CgTab::POU_INFO& info) {
    UnitInfo unit;
    std::memcpy(&unit, info.bytes, sizeof(unit));
    return unit;
}

CgTab::POU_INFO UnitInfo::ToInfo() const {
    CgTab::POU_INFO info;
    std::memcpy(info.bytes, this, sizeof(info.bytes));
    return info;
}

TranslationResult::TranslationResult(TranslationResult&& other) noexcept
    : outcome(other.outcome),
      declarations(other.declarations),
      entered(other.entered),
      units(other.units),
      refusals_(std::exchange(other.refusals_, nullptr)),
      count_(std::exchange(other.count_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {}

TranslationResult::~TranslationResult() {
    for (const TranslationRefusal& refusal : *this) {
        Release(const_cast<char16_t*>(refusal.mark));
    }
    Release(refusals_);
}

bool TranslationResult::Add(const TranslationRefusal& refusal) {
    if (count_ == capacity_ && !Enlarge(refusals_, count_, capacity_, 8)) {
        return false;
    }
    char16_t* mark = nullptr;
    if (refusal.mark) {
        const size_t size = chars::Length(refusal.mark) + 1;
        mark = AllocateArray<char16_t>(size);
        if (!mark) {
            return false;
        }
        std::memcpy(mark, refusal.mark, size * sizeof(char16_t));
    }
    ::new (refusals_ + count_) TranslationRefusal(refusal);
    refusals_[count_++].mark = mark;
    return true;
}

}  // namespace lq
