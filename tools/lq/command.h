// What the commands share: their exit statuses, and the failure that ends one.
#pragma once

#include <stdexcept>
#include <string>

namespace lq::tool {

enum ExitStatus : int {
    kDone = 0,
    kInputHasFaults = 1,  // all of them were reported
    kCannotWork = 2,      // one sentence on standard error says why
};

// Ends a command that cannot do its work; the text is that sentence.
class CommandError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace lq::tool
