// How far long work is, on standard error and only where that is a terminal. What lasts shorter
// than a moment shows nothing.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace lq::tool {

// One at a time. The line is written by a thread of its own, so that it comes in time whatever the
// work is waiting for.
class Progress {
  public:
    // `what` names the work, as "reading plant.xml". With a total of 0 the size of the work is not
    // known, and what is done are bytes.
    explicit Progress(const std::string& what, uint64_t total = 0);
    // Takes the line away.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // For work that prints results as it goes: null where they go to a terminal, because there they
    // are a sign of progress themselves.
    static std::unique_ptr<Progress> OfResults(const std::string& what, uint64_t total);

    // So much of the total is done. Cheap.
    void Set(uint64_t done) { done_.store(done, std::memory_order_relaxed); }

    // Takes the line away, for a message; it comes again when the result is gone.
    [[nodiscard]] static std::unique_lock<std::mutex> Hide();

    // What takes the line away, for an end in the middle of anything: empty where it is not shown.
    static std::string_view Wiper() noexcept;

  private:
    void Run();
    void Show();
    void Clear();

    std::string what_;
    uint64_t total_;
    std::atomic<uint64_t> done_ = 0;
    std::mutex mutex_;  // of the terminal, and of what follows
    std::condition_variable wake_;
    std::atomic<bool> isShown_ = false;
    bool isOver_ = false;
    std::thread thread_;
};

}  // namespace lq::tool
