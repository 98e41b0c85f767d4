// What all scanners of the process share, in one place.
#pragma once

#include <atomic>
#include <cstdint>

namespace lq::scanner {

// Set by the identifier B_COMMENT: the next comma inside a string literal ends it. Reset by that
// comma and by the construction of any scanner. Atomic, so that scanners may work on several
// threads; which of them meets the comma is then chance, and no order of anything else hangs on it.
class CommaFlag {
  public:
    bool IsSet() const noexcept { return isSet_.load(std::memory_order_relaxed); }
    void Set(bool isSet) noexcept { isSet_.store(isSet, std::memory_order_relaxed); }
    // Resets it; whether it was set. Of several threads one has it.
    bool Take() noexcept { return IsSet() && isSet_.exchange(false, std::memory_order_relaxed); }

  private:
    std::atomic<bool> isSet_ = false;
};
extern CommaFlag commaEndsString;

// Whether the user adapter allows the string escape "$00"; asked anew on every call.
int32_t AskNulEscape();

}  // namespace lq::scanner
