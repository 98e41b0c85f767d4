#include "tools/lq/progress.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <unistd.h>

#include "tools/lq/escape.h"
#include "tools/lq/output_file.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kFirst = std::chrono::milliseconds(50);
constexpr auto kInterval = std::chrono::milliseconds(100);

// The moment before something is shown counts from the start of the program: otherwise many short
// pieces of work, one after the other, would take long without a sign.
const Clock::time_point firstSign = Clock::now() + kFirst;

constexpr char kWiper[] = "\r\x1B[K";

std::atomic<Progress*> current = nullptr;

// The longest beginning of the text that has at most so many bytes and ends with a whole character.
std::string Cut(const std::string& text, size_t bytes) {
    while (bytes > 0 && bytes < text.size() &&
           (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80) {
        --bytes;
    }
    return text.substr(0, bytes);
}

// What fits the terminal's line, without its last column, behind which some terminals wrap. No
// character of UTF-8 takes more columns than bytes.
std::string FittingLine(const std::string& what, const std::string& number) {
    constexpr char kCut[] = "...";
    const size_t room = Columns(Stream::kMessages) - 1;
    if (what.size() + number.size() <= room) {
        return what + number;
    }
    const std::string tail = kCut + number;
    return Cut(what, room - std::min(room, tail.size())) + tail.substr(0, room);
}

}  // namespace

Progress::Progress(const std::string& what, uint64_t total) : what_(OneLine(what)), total_(total) {
    if (!CanControl(Stream::kMessages) || IsQuiet()) {
        return;
    }
    current = this;
    if (Clock::now() >= firstSign) {
        Show();
    }
    try {
        thread_ = std::thread([this] { Run(); });
    } catch (const std::system_error&) {  // without a thread the work is done all the same
    }
}

Progress::~Progress() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
        Clear();
    }
    if (thread_.joinable()) {
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
    Progress* const shown = current;
    if (!shown) {
        return {};
    }
    std::unique_lock lock(shown->mutex_);
    shown->Clear();
    return lock;
}

std::string_view Progress::Wiper() noexcept {
    const Progress* const shown = current;
    return shown && shown->isShown_ ? kWiper : "";
}

void Progress::Run() {
    std::unique_lock lock(mutex_);
    Clock::time_point next = isShown_ ? Clock::now() + kInterval : firstSign;
    while (!wake_.wait_until(lock, next, [this] { return isOver_; })) {
        Show();
        next = Clock::now() + kInterval;
    }
}

void Progress::Show() {
    const auto done = static_cast<double>(done_.load(std::memory_order_relaxed));
    char number[32] = "";
    if (total_ != 0) {
        std::snprintf(number, sizeof(number), ": %.0f %%",
                      std::min(1.0, done / static_cast<double>(total_)) * 100);
    } else if (done > 0) {
        std::snprintf(number, sizeof(number), ": %.1f MB", done / 1e6);
    }
    WriteAll(STDERR_FILENO, '\r' + FittingLine(what_, number) + "\x1B[K");
    isShown_ = true;
}

void Progress::Clear() {
    if (isShown_) {
        WriteAll(STDERR_FILENO, kWiper);
        isShown_ = false;
    }
}

}  // namespace lq::tool
