// A growing array of plain records.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "lq_data/memory.h"

namespace lq::translate {

template <typename T>
class Growing {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

  public:
    Growing() = default;
    ~Growing() { Release(items_); }
    Growing(const Growing&) = delete;
    Growing& operator=(const Growing&) = delete;

    // The new element, or null when memory is short.
    T* Append(const T& item) {
        if (count_ == capacity_ && !Reserve(count_ + 1)) {
            return nullptr;
        }
        return ::new (items_ + count_++) T(item);
    }
    // `count` elements, all `item`. False, and there are none, when memory is short.
    bool Assign(uint32_t count, const T& item) {
        count_ = 0;
        if (count > capacity_ && !Reserve(count)) {
            return false;
        }
        while (count_ < count) {
            ::new (items_ + count_++) T(item);
        }
        return true;
    }
    void Clear() { count_ = 0; }  // keeps the room

    uint32_t Count() const { return count_; }
    T& operator[](uint32_t index) { return items_[index]; }
    T* begin() { return items_; }
    T* end() { return items_ + count_; }

  private:
    bool Reserve(uint32_t least) {
        const uint64_t room = uint64_t{capacity_} * 2 > least ? uint64_t{capacity_} * 2 : least;
        auto* const items =
            static_cast<T*>(room <= UINT32_MAX ? Allocate(room * sizeof(T)) : nullptr);
        if (!items) {
            return false;
        }
        if (count_ != 0) {
            std::memcpy(static_cast<void*>(items), items_, count_ * sizeof(T));
        }
        Release(items_);
        items_ = items;
        capacity_ = static_cast<uint32_t>(room);
        return true;
    }

    T* items_ = nullptr;
    uint32_t count_ = 0;
    uint32_t capacity_ = 0;
};

}  // namespace lq::translate
