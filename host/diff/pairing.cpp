#include "host/diff/pairing.h"

#include <algorithm>

#include "lq_data/detail/chars.h"
#include "lq_data/host/model/flat_index.h"

namespace lq::host::diff {

namespace {

uint32_t HashOf(const Key& key) {
    constexpr uint32_t kSpread = 0x9E3779B1;  // a prime near 2^32 divided by the golden ratio
    return (HashOfName(key.name) * kSpread + HashOfName(key.holder)) * kSpread + key.scope;
}

bool IsSame(const Key& a, const Key& b) {
    return a.scope == b.scope && chars::EqualNoCase(a.name, b.name) &&
           chars::EqualNoCase(a.holder, b.holder);
}

// The items of one key in their order, each key found by its hash.
class Queues {
  public:
    explicit Queues(const std::vector<Key>& keys) : keys_(keys), next_(keys.size(), kNone) {}

    void Add(uint32_t item) {
        const uint32_t hash = HashOf(keys_[item]);
        const uint32_t number = Find(keys_[item], hash);
        if (number == 0) {
            queues_.push_back({item, item});
            index_.Add(static_cast<uint32_t>(queues_.size()), hash);
            return;
        }
        Queue& queue = queues_[number - 1];
        next_[queue.last] = item;
        queue.last = item;
    }

    // The next item of that key; kNone for none.
    uint32_t Take(const Key& key) {
        const uint32_t number = Find(key, HashOf(key));
        if (number == 0 || queues_[number - 1].first == kNone) {
            return kNone;
        }
        const uint32_t item = queues_[number - 1].first;
        queues_[number - 1].first = next_[item];
        return item;
    }

  private:
    struct Queue {
        uint32_t first;
        uint32_t last;
    };

    // The number of the key's queue from 1, 0 for none. A queue is known by its last item, which
    // stays.
    uint32_t Find(const Key& key, uint32_t hash) const {
        return index_.Find(
            hash, [&](uint32_t number) { return IsSame(key, keys_[queues_[number - 1].last]); });
    }

    const std::vector<Key>& keys_;
    std::vector<uint32_t> next_;
    std::vector<Queue> queues_;
    FlatIndex<uint32_t> index_;
};

}  // namespace

void Pairing::Match(const std::vector<Key>& oldKeys, const std::vector<Key>& newKeys) {
    Queues waiting(newKeys);
    for (uint32_t item = 0; item < newKeys.size(); ++item) {
        if (oldOf_[item] == kNone) {
            waiting.Add(item);
        }
    }
    for (uint32_t item = 0; item < oldKeys.size(); ++item) {
        const uint32_t partner = newOf_[item] == kNone ? waiting.Take(oldKeys[item]) : kNone;
        if (partner != kNone) {
            newOf_[item] = partner;
            oldOf_[partner] = item;
        }
    }
}

void Pairing::MatchLast() {
    const auto isLeft = [](const std::vector<uint32_t>& partners) {
        return std::ranges::count(partners, kNone) == 1;
    };
    if (isLeft(newOf_) && isLeft(oldOf_)) {
        const auto oldItem = std::ranges::find(newOf_, kNone);
        const auto newItem = std::ranges::find(oldOf_, kNone);
        *oldItem = static_cast<uint32_t>(newItem - oldOf_.begin());
        *newItem = static_cast<uint32_t>(oldItem - newOf_.begin());
    }
}

// Patience sorting: of each length, the selection that ends lowest so far.
std::vector<bool> LongestRise(const std::vector<uint32_t>& numbers) {
    std::vector<uint32_t> ends;  // items
    std::vector<uint32_t> before(numbers.size(), kNone);
    for (uint32_t item = 0; item < numbers.size(); ++item) {
        const auto place = std::ranges::lower_bound(ends, numbers[item], {},
                                                    [&](uint32_t end) { return numbers[end]; });
        if (place != ends.begin()) {
            before[item] = place[-1];
        }
        if (place == ends.end()) {
            ends.push_back(item);
        } else {
            *place = item;
        }
    }
    std::vector<bool> isIn(numbers.size());
    for (uint32_t item = ends.empty() ? kNone : ends.back(); item != kNone; item = before[item]) {
        isIn[item] = true;
    }
    return isIn;
}

}  // namespace lq::host::diff
