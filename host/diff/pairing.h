// Which items of two lists are the same thing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lq_data/host/model/text_pool.h"

namespace lq::host::diff {

inline constexpr uint32_t kNone = UINT32_MAX;

// What makes items the same: two names, without regard to case, in the same scope.
struct Key {
    uint32_t scope = 0;
    Text name = u"";
    Text holder = u"";
};

// A part of a list.
struct Range {
    uint32_t begin = 0;
    uint32_t end = 0;
};

class Pairing {
  public:
    Pairing(std::size_t oldCount, std::size_t newCount)
        : newOf_(oldCount, kNone), oldOf_(newCount, kNone) {}

    // Pairs those of one key that have no partner yet: the first with the first, the second with
    // the second. The keys are those of all items.
    void Match(const std::vector<Key>& oldKeys, const std::vector<Key>& newKeys);
    // Pairs the only item on either side that has no partner.
    void MatchLast();

    // The partner; kNone for none.
    uint32_t NewOf(uint32_t oldItem) const { return newOf_[oldItem]; }
    uint32_t OldOf(uint32_t newItem) const { return oldOf_[newItem]; }

    Range AllOld() const { return {0, static_cast<uint32_t>(newOf_.size())}; }
    Range AllNew() const { return {0, static_cast<uint32_t>(oldOf_.size())}; }

    // Calls take(oldItem, newItem), either of them kNone, for the new items in their order, and for
    // the old ones without a partner: behind what stands before them in both lists.
    template <typename Take>
    void Walk(Range oldItems, Range newItems, Take take) const {
        const auto tellRemoved = [&](uint32_t first) {
            for (; first < oldItems.end && !IsIn(newItems, newOf_[first]); ++first) {
                if (newOf_[first] == kNone) {
                    take(first, kNone);
                }
            }
        };
        tellRemoved(oldItems.begin);
        for (uint32_t item = newItems.begin; item < newItems.end; ++item) {
            take(oldOf_[item], item);
            if (IsIn(oldItems, oldOf_[item])) {
                tellRemoved(oldOf_[item] + 1);
            }
        }
    }

    template <typename Take>
    void Walk(Take take) const {
        Walk(AllOld(), AllNew(), take);
    }

  private:
    static bool IsIn(Range range, uint32_t item) { return item >= range.begin && item < range.end; }

    std::vector<uint32_t> newOf_;
    std::vector<uint32_t> oldOf_;
};

// Of numbers that all differ, whether each is in the longest selection that rises.
std::vector<bool> LongestRise(const std::vector<uint32_t>& numbers);

}  // namespace lq::host::diff
