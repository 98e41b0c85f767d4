#include "tools/lq/progress.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <utility>

#include "tools/lq/terminal.h"

namespace lq::tool {

namespace {

constexpr auto kFirst = std::chrono::milliseconds(50);
constexpr auto kInterval = std::chrono::milliseconds(100);

Progress* current = nullptr;

}  // namespace

Progress::Progress(std::string what, uint64_t total) : what_(std::move(what)), total_(total) {
    if (!CanControl(Stream::kMessages)) {
        return;
    }
    current = this;
    try {
        thread_ = std::thread([this] { Run(); });
    } catch (const std::system_error&) {  // work is done without it
    }
}

Progress::~Progress() {
    if (thread_.joinable()) {
        {
            const std::lock_guard lock(mutex_);
            isOver_ = true;
            Clear();
        }
        wake_.notify_one();
        thread_.join();
    }
    if (current == this) {
        current = nullptr;
    }
}

std::unique_ptr<Progress> Progress::OfResults(const std::string& what, uint64_t total) {
    return IsTerminal(Stream::kResults) ? nullptr : std::make_unique<Progress>(what, total);
}

std::unique_lock<std::mutex> Progress::Hide() {
    if (!current) {
        return {};
    }
    std::unique_lock lock(current->mutex_);
    current->Clear();
    return lock;
}

void Progress::Run() {
    std::unique_lock lock(mutex_);
    auto interval = kFirst;
    while (!wake_.wait_for(lock, interval, [this] { return isOver_; })) {
        Show();
        interval = kInterval;
    }
}

void Progress::Show() {
    const auto done = static_cast<double>(done_.load(std::memory_order_relaxed));
    std::fprintf(stderr, "\r%s", what_.c_str());
    if (total_ != 0) {
        std::fprintf(stderr, ": %.0f %%", std::min(1.0, done / static_cast<double>(total_)) * 100);
    } else if (done > 0) {
        std::fprintf(stderr, ": %.1f MB", done / 1e6);
    }
    std::fputs("\x1B[K", stderr);
    std::fflush(stderr);
    isShown_ = true;
}

void Progress::Clear() {
    if (isShown_) {
        std::fputs("\r\x1B[K", stderr);
        std::fflush(stderr);
        isShown_ = false;
    }
}

}  // namespace lq::tool
