#include "lq_data/memory.h"

#include <cstdlib>

namespace lq {

void* Allocate(std::size_t bytes) noexcept {
    return std::malloc(bytes ? bytes : 1);
}

void Release(void* block) noexcept {
    std::free(block);
}

}  // namespace lq
