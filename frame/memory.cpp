#include "lq_data/memory.h"

#include <atomic>
#include <cstdlib>

namespace lq {

namespace {

constinit std::atomic<ShortageHandler> shortageHandler = nullptr;
// The counter lies in the thread-local storage that the loader sets aside when a thread starts. By
// default a library that is opened later gets its storage with its first access, and that would be
// an allocation at the very moment when memory is short.
[[gnu::tls_model("initial-exec")]] constinit thread_local uint32_t shortages = 0;

}  // namespace

void* Allocate(std::size_t bytes) noexcept {
    void* const block = std::malloc(bytes ? bytes : 1);
    if (!block) {
        ReportShortage();
    }
    return block;
}

void Release(void* block) noexcept {
    std::free(block);
}

ShortageHandler SetShortageHandler(ShortageHandler handler) noexcept {
    return shortageHandler.exchange(handler);
}

void ReportShortage() noexcept {
    ++shortages;
    if (const ShortageHandler handler = shortageHandler) {
        handler();
    }
}

uint32_t CountShortages() noexcept {
    return shortages;
}

}  // namespace lq
