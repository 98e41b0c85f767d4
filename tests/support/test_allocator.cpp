#include "test_allocator.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "lq_data/memory.h"

namespace {

int64_t liveBlocks = 0;
std::size_t largest = 0;
int64_t untilFailure = 0;  // 0: none is due
bool failAllLater = false;
bool hasFailed = false;

bool FailsNow() {
    if (hasFailed && failAllLater) {
        return true;
    }
    if (untilFailure == 0 || --untilFailure != 0) {
        return false;
    }
    hasFailed = true;
    return true;
}

}  // namespace

namespace lq {

void* Allocate(std::size_t bytes) noexcept {
    largest = std::max(largest, bytes);
    void* block = FailsNow() ? nullptr : std::malloc(bytes ? bytes : 1);
    if (block) {
        std::memset(block, 0xA5, bytes);
        ++liveBlocks;
    }
    return block;
}

void Release(void* block) noexcept {
    if (block) {
        --liveBlocks;
    }
    std::free(block);
}

}  // namespace lq

namespace lq::test {

int64_t LiveBlocks() {
    return liveBlocks;
}

std::size_t LargestAllocation() {
    return largest;
}

void ResetLargestAllocation() {
    largest = 0;
}

FailingAllocation::FailingAllocation(int64_t nth, bool all) {
    untilFailure = nth;
    failAllLater = all;
    hasFailed = false;
}

FailingAllocation::~FailingAllocation() {
    untilFailure = 0;
    failAllLater = hasFailed = false;
}

bool FailingAllocation::HasFailed() const {
    return hasFailed;
}

void FailEachAllocation(const std::function<void(const FailingAllocation&)>& operation) {
    constexpr int64_t kTooMany = 1000;
    for (const bool all : {false, true}) {
        bool failed = true;
        for (int64_t nth = 1; failed; ++nth) {
            SCOPED_TRACE(testing::Message() << "failing allocation " << nth << ", all " << all);
            ASSERT_LT(nth, kTooMany);
            const int64_t before = LiveBlocks();
            {
                const FailingAllocation failing(nth, all);
                operation(failing);
                failed = failing.HasFailed();
            }
            ASSERT_EQ(LiveBlocks(), before);
        }
    }
}

}  // namespace lq::test
