#include "memory_jobs.h"

#include <gtest/gtest.h>

#include "lq_data/frame.h"
#include "test_allocator.h"

namespace lq::test {

namespace {

constexpr int64_t kTooMany = 2000;

// Whether an allocation failed.
bool RunOnce(const MemoryJob& job, int64_t nth, bool all, const std::string (&whole)[2]) {
    const int64_t before = LiveBlocks();
    bool failed = false;
    {
        const Attempt attempt = job.start();
        std::string answer;
        {
            const FailingAllocation failing(nth, all);
            answer = attempt();
            failed = failing.HasFailed();
        }
        EXPECT_TRUE(answer == whole[0] || (failed && answer == kShort)) << answer;
        EXPECT_EQ(attempt(), whole[answer == whole[0] ? 1 : 0]) << "with memory back";
    }
    ReleaseThread();
    EXPECT_EQ(LiveBlocks(), before);
    return failed;
}

// Every test ends with as many blocks as it began with.
class NothingIsLeftOver : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        ReleaseThread();
        before_ = LiveBlocks();
    }
    void OnTestEnd(const testing::TestInfo&) override {
        ReleaseThread();
        EXPECT_EQ(LiveBlocks(), before_) << "blocks of the library that the test left";
    }

    int64_t before_ = 0;
};

[[maybe_unused]] const bool kListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new NothingIsLeftOver);
    return true;
}();

}  // namespace

void RunWithFailures(const MemoryJob& job) {
    SCOPED_TRACE(job.name);
    ReleaseThread();
    std::string whole[2];
    {
        const Attempt attempt = job.start();
        whole[0] = attempt();
        whole[1] = attempt();
    }
    ReleaseThread();
    ASSERT_TRUE(whole[0] != kShort && whole[1] != kShort) << "nothing fails here";
    for (const bool all : {false, true}) {
        int64_t nth = 1;
        for (bool failed = true; failed; ++nth) {
            SCOPED_TRACE(testing::Message() << "failing allocation " << nth << ", all " << all);
            failed = RunOnce(job, nth, all, whole);
            ASSERT_LT(nth, kTooMany);
            if (testing::Test::HasFailure()) {
                return;
            }
        }
        EXPECT_GT(nth, 2) << "the job allocates nothing";
    }
}

}  // namespace lq::test
