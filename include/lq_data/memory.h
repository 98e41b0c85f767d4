// Where every byte of the library comes from and goes back to.
//
// All allocation of the library passes through Allocate and Release; nothing here throws. A build
// that links another definition of these functions (tests do) counts, fills, guards and fails every
// allocation of the library without a change to the code under test.
//
// Callers need this header to release a block that the library hands over (a token's overflow text
// taken from a Scanner), to hand text over to the library's ownership, and to hear of a shortage of
// memory when it happens, or ask whether there was one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

#include "lq_data/export.h"

namespace lq {

// `bytes` bytes, aligned for any ordinary object, or null when memory is short. Zero bytes give a
// block of their own.
LQ_DATA_API void* Allocate(std::size_t bytes) noexcept;

// Gives a block back. Null is allowed.
LQ_DATA_API void Release(void* block) noexcept;

// What is called when memory is short, before a result says so, in the thread that asked for
// memory.
using ShortageHandler = void (*)() noexcept;

// Sets the handler of this process, and returns the one before. Null means none, as at first. It is
// for programs that end at once, as lq does, instead of looking for a shortage in each result,
// where it may be hard to tell from other answers. When a handler returns, the result tells.
LQ_DATA_API ShortageHandler SetShortageHandler(ShortageHandler handler) noexcept;

// Counts a shortage and calls the handler. Allocate calls it, and so does what gets its memory from
// elsewhere, as from the system. An embedder's own model should call it, too.
LQ_DATA_API void ReportShortage() noexcept;

// How many shortages this thread has met so far, modulo 2^32.
LQ_DATA_API uint32_t CountShortages() noexcept;

// Whether memory has run short in this thread since the watch was made: tells "nothing" from "no
// memory" where a result has one answer for both. A shortage that was got over counts, too.
class MemoryWatch {
  public:
    bool WasShort() const noexcept { return CountShortages() != before_; }

  private:
    uint32_t before_ = CountShortages();
};

// An array of `count` elements of a trivial type, uninitialised; null when memory is short or the
// size does not fit a size_t. Released with Release.
template <typename T>
T* AllocateArray(std::size_t count) noexcept {
    static_assert(std::is_trivial_v<T>);
    if (count > static_cast<std::size_t>(-1) / sizeof(T)) {
        return nullptr;
    }
    return static_cast<T*>(Allocate(count * sizeof(T)));
}

// One object, constructed from `args`; null when memory is short. Released with Delete.
template <typename T, typename... Args>
T* New(Args&&... args) noexcept {
    void* block = Allocate(sizeof(T));
    return block ? ::new (block) T(std::forward<Args>(args)...) : nullptr;
}

template <typename T>
void Delete(T* object) noexcept {
    if (object) {
        object->~T();
        Release(object);
    }
}

}  // namespace lq

// Routes `new` and `delete` of a class to the layer above. `new` then yields null when memory is
// short, and no constructor runs.
#define LQ_ALLOCATED                                        \
    static void* operator new(std::size_t bytes) noexcept { \
        return lq::Allocate(bytes);                         \
    }                                                       \
    static void operator delete(void* block) noexcept {     \
        lq::Release(block);                                 \
    }
