#include "tools/lq/progress.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace lq::tool {

namespace {

constexpr auto kInterval = std::chrono::milliseconds(100);
constexpr size_t kStepsBetweenLooks = 64;  // at the clock

}  // namespace

Progress::Progress(std::string what)
    : what_(std::move(what)),
      isTerminal_(isatty(STDERR_FILENO) != 0),
      next_(Clock::now() + kInterval) {}

Progress::~Progress() {
    if (isShown_) {
        std::fputs("\r\x1B[K", stderr);
    }
}

void Progress::Step(size_t total) {
    ++done_;
    if (!isTerminal_ || done_ % kStepsBetweenLooks != 0 || Clock::now() < next_) {
        return;
    }
    next_ = Clock::now() + kInterval;
    isShown_ = true;
    std::fprintf(stderr, "\r%zu of %zu %s\x1B[K", done_, total, what_.c_str());
    std::fflush(stderr);
}

}  // namespace lq::tool
