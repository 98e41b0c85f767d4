#include "test_allocator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
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

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kGuarded = false;  // its red zones see more, reading included
#elif defined(__has_feature)
constexpr bool kGuarded = !__has_feature(address_sanitizer);
#else
constexpr bool kGuarded = true;
#endif

// What lies in front of a block; behind it lie as many bytes of kGuard.
struct alignas(std::max_align_t) Front {
    std::size_t bytes;
    uint64_t guard;
};
constexpr std::size_t kFront = kGuarded ? sizeof(Front) : 0;
constexpr uint64_t kLive = 0x4C495645B10C4B1D;
constexpr unsigned char kGuard = 0xFD;
constexpr int kNew = 0xA5;
constexpr int kReleased = 0xDD;

void* Guard(void* whole, std::size_t bytes) {
    if (!kGuarded) {
        return whole;
    }
    const Front front = {bytes, kLive};
    std::memcpy(whole, &front, sizeof(front));
    auto* const block = static_cast<unsigned char*>(whole) + kFront;
    std::memset(block + bytes, kGuard, kFront);
    return block;
}

// What to give back to malloc. Ends the run when somebody wrote beside the block, or released what
// is no block or none any more.
void* Unguard(void* block) {
    if (!kGuarded) {
        return block;
    }
    auto* const bytes = static_cast<unsigned char*>(block);
    Front front;
    std::memcpy(&front, bytes - kFront, sizeof(front));
    const auto isGuard = [](unsigned char byte) { return byte == kGuard; };
    if (front.guard != kLive ||
        !std::all_of(bytes + front.bytes, bytes + front.bytes + kFront, isGuard)) {
        std::fprintf(stderr, "a block was released twice, or written beyond its ends\n");
        std::abort();
    }
    std::memset(bytes - kFront, kReleased, front.bytes + 2 * kFront);
    __asm__ volatile("" : : "r"(bytes) : "memory");  // not to be left out in front of a free
    return bytes - kFront;
}

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
    if (FailsNow() || bytes > PTRDIFF_MAX - 2 * kFront) {
        return nullptr;
    }
    void* const whole = std::malloc(std::max<std::size_t>(bytes + 2 * kFront, 1));
    if (!whole) {
        return nullptr;
    }
    void* const block = Guard(whole, bytes);
    std::memset(block, kNew, bytes);
    ++liveBlocks;
    return block;
}

void Release(void* block) noexcept {
    if (block) {
        --liveBlocks;
        std::free(Unguard(block));
    }
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

bool FailingAllocation::HasFailedOnce() const {
    return hasFailed && !failAllLater;
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
