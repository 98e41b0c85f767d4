#include "lq_data/memory.h"

#include <cstdlib>

namespace lq {

namespace {

constinit thread_local uint32_t failedAllocations = 0;

}  // namespace

void* Allocate(std::size_t bytes) noexcept {
    void* const block = std::malloc(bytes ? bytes : 1);
    if (!block) {
        ++failedAllocations;
    }
    return block;
}

uint32_t FailedAllocations() noexcept {
    return failedAllocations;
}

void Release(void* block) noexcept {
    std::free(block);
}

}  // namespace lq
