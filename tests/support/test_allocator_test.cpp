// The allocator of the tests ends a run that misuses a block, with and without sanitizers.
#include <gtest/gtest.h>

#include "lq_data/memory.h"

namespace {

volatile std::size_t noBytes = 0;  // so that no compiler sees the faults

TEST(TestAllocator, EndsTheRunOfWhoWritesBesideABlockOrReleasesItTwice) {
    struct {
        const char* said;  // by the allocator, or by AddressSanitizer
        void (*fault)(volatile unsigned char* block);
    } const kFaults[] = {
        {"written beyond|overflow", [](volatile unsigned char* block) { block[noBytes + 5] = 1; }},
        {"", [](volatile unsigned char* block) { *(block - 1 - noBytes) = 1; }},
        {"released twice|double-free",
         [](volatile unsigned char* block) { lq::Release(const_cast<unsigned char*>(block)); }},
    };
    for (const auto& fault : kFaults) {
        const auto misuse = [&] {
            auto* const block = static_cast<unsigned char*>(lq::Allocate(noBytes + 5));
            fault.fault(block);
            lq::Release(block);
        };
        EXPECT_DEATH(misuse(), fault.said);
    }
}

}  // namespace
