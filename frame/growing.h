// Growing arrays of plain records.
#pragma once

#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>

#include "lq_data/memory.h"

namespace lq {

// Gives an array room for twice as many elements, for `least` at any rate, and keeps the first
// `count`. False, and nothing has changed, when memory is short.
template <typename T>
bool Enlarge(T*& items, uint32_t count, uint32_t& capacity, uint32_t least) {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    const uint64_t room = uint64_t{capacity} * 2 > least ? uint64_t{capacity} * 2 : least;
    auto* const larger = static_cast<T*>(room <= UINT32_MAX ? Allocate(room * sizeof(T)) : nullptr);
    if (!larger) {
        return false;
    }
    if (count != 0) {
        std::memcpy(static_cast<void*>(larger), items, count * sizeof(T));
    }
    Release(items);
    items = larger;
    capacity = static_cast<uint32_t>(room);
    return true;
}

template <typename T>
class Growing {
  public:
    Growing() = default;
    ~Growing() { Release(items_); }
    Growing(const Growing&) = delete;
    Growing& operator=(const Growing&) = delete;

    // The new element, or null when memory is short.
    T* Append(const T& item) {
        if (count_ == capacity_ && !Enlarge(items_, count_, capacity_, kFirst)) {
            return nullptr;
        }
        return ::new (items_ + count_++) T(item);
    }
    // `count` elements, all `item`. False, and there are none, when memory is short.
    bool Assign(uint32_t count, const T& item) {
        count_ = 0;
        if (count > capacity_ && !Enlarge(items_, 0, capacity_, count)) {
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
    const T& operator[](uint32_t index) const { return items_[index]; }
    T* begin() { return items_; }
    T* end() { return items_ + count_; }

  private:
    static constexpr uint32_t kFirst = 8;

    T* items_ = nullptr;
    uint32_t count_ = 0;
    uint32_t capacity_ = 0;
};

}  // namespace lq
