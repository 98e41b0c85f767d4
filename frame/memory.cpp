#include "lq_data/memory.h"

#include <atomic>
#include <cstdlib>

#include "frame/per_thread.h"

namespace lq {

namespace {

constinit std::atomic<ShortageHandler> shortageHandler = nullptr;
LQ_THREAD_LOCAL uint64_t shortages = 0;

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
    return static_cast<uint32_t>(shortages);
}

}  // namespace lq
