#include "lq_data/memory.h"

#include <atomic>
#include <cstdlib>

namespace lq {

namespace {

constinit std::atomic<ShortageHandler> shortageHandler = nullptr;

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
    if (const ShortageHandler handler = shortageHandler) {
        handler();
    }
}

}  // namespace lq
