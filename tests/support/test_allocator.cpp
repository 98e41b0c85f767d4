#include "test_allocator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <utility>

#include <gtest/gtest.h>

#include "lq_data/memory.h"

namespace {

int64_t liveBlocks = 0;
uint32_t shortages = 0;
std::size_t largest = 0;
int64_t untilFailure = 0;  // 0: none is due
bool failAllLater = false;
bool hasFailed = false;
lq::ShortageHandler shortageHandler = nullptr;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kGuarded = false;  // its red zones see more, reading included
#elif defined(__has_feature)
constexpr bool kGuarded = !__has_feature(address_sanitizer);
#else
constexpr bool kGuarded = true;
#endif

// A block ends with what is left of malloc's, and that with the number of bytes that were asked
// for; in between lies kGuard. (What somebody writes in front of a block, malloc finds.)
constexpr std::size_t kBehind = kGuarded ? 16 + sizeof(std::size_t) : 0;
constexpr unsigned char kGuard = 0xFD;
constexpr int kNew = 0xA5;
constexpr int kReleased = 0xDD;

void Guard(void* block, std::size_t bytes) {
    auto* const begin = static_cast<unsigned char*>(block);
    auto* const size = begin + malloc_usable_size(block) - sizeof(bytes);
    std::fill(begin + bytes, size, kGuard);
    std::memcpy(size, &bytes, sizeof(bytes));
}

// Ends the run when somebody wrote behind the block, or released what is no block or none any more.
void CheckGuard(void* block) {
    auto* const begin = static_cast<unsigned char*>(block);
    const std::size_t whole = malloc_usable_size(block);
    auto* const size = begin + whole - sizeof(whole);
    std::size_t bytes;
    std::memcpy(&bytes, size, sizeof(bytes));
    const auto isGuard = [](unsigned char byte) { return byte == kGuard; };
    if (bytes > whole - kBehind || !std::all_of(begin + bytes, size, isGuard)) {
        std::fprintf(stderr, "a block was released twice, or written beyond its end\n");
        std::abort();
    }
    std::memset(block, kReleased, whole);
    __asm__ volatile("" : : "r"(block) : "memory");  // not to be left out in front of a free
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
    const bool fits = bytes <= PTRDIFF_MAX - kBehind;
    void* const block =
        FailsNow() || !fits ? nullptr : std::malloc(std::max<std::size_t>(bytes + kBehind, 1));
    if (!block) {
        ReportShortage();
        return nullptr;
    }
    if (kGuarded) {
        Guard(block, bytes);
    }
    std::memset(block, kNew, bytes);
    ++liveBlocks;
    return block;
}

uint32_t CountShortages() noexcept {
    return shortages;
}

void Release(void* block) noexcept {
    if (!block) {
        return;
    }
    --liveBlocks;
    if (kGuarded) {
        CheckGuard(block);
    }
    std::free(block);
}

ShortageHandler SetShortageHandler(ShortageHandler handler) noexcept {
    return std::exchange(shortageHandler, handler);
}

void ReportShortage() noexcept {
    ++shortages;
    if (shortageHandler) {
        shortageHandler();
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
