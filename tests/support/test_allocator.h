// The allocator beneath the library in the tests: it counts blocks, fills them, guards their ends
// and fails on demand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace lq::test {

// Blocks that are allocated and not yet released.
int64_t LiveBlocks();

// The most bytes that one allocation asked for since the reset.
std::size_t LargestAllocation();
void ResetLargestAllocation();

// While one lives, the `nth` allocation of the library from now on fails (1: the next), and with
// `all` every later one too.
class FailingAllocation {
  public:
    FailingAllocation(int64_t nth, bool all);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    bool HasFailed() const;
    // One allocation has failed, and none will any more.
    bool HasFailedOnce() const;
};

// Runs `operation` with its first allocation failing, then its second, and so on until it gets
// through without a failure; once for single failures, once with all later ones failing too. The
// operation is told whether memory was to fail, so that it can check its result; it starts afresh
// each time and releases everything: a block that is left over fails the test.
void FailEachAllocation(const std::function<void(const FailingAllocation& failing)>& operation);

}  // namespace lq::test
