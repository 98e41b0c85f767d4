// How far long work is, on standard error and only where that is a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace lq::tool {

class Progress {
  public:
    // `what` names the work, as "declarations".
    explicit Progress(std::string what);
    // Takes its line away.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // One more of `total` is done. Cheap: the line is written at most ten times a second.
    void Step(size_t total);

  private:
    using Clock = std::chrono::steady_clock;

    std::string what_;
    bool isTerminal_;
    bool isShown_ = false;
    size_t done_ = 0;
    Clock::time_point next_;
};

}  // namespace lq::tool
