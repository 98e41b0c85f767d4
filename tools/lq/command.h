// What the commands share: their exit statuses, the failure that ends one, and the outputs that are
// refused.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace lq::tool {

enum ExitStatus : int {
    kDone = 0,
    kInputHasFaults = 1,  // all of them were reported
    kCannotWork = 2,      // one sentence on standard error says why
};

// Ends a command that cannot do its work; the text is that sentence.
class CommandError : public std::runtime_error {
  public:
    explicit CommandError(const std::string& text) : CommandError("lq", text) {}

    // What stands in front of the sentence: the program, or the place of the input.
    const std::string& Origin() const { return origin_; }

  protected:
    CommandError(std::string origin, const std::string& text)
        : std::runtime_error(text), origin_(std::move(origin)) {}

  private:
    std::string origin_;
};

// Throws when `output` leads to the file that `input` leads to, whatever their names; both may be
// "-". Only ordinary files can be overwritten.
void RefuseInputAsOutput(const std::string& input, const std::string& output);

// Throws when two inputs are the same file, whatever their names, or both standard input.
void RefuseInputTwice(const std::vector<std::string>& inputs);

// Throws when an image is to go to standard output, and that is a terminal or takes a JSON
// document, too.
void CheckImageOutput(const std::string& image, bool json);

}  // namespace lq::tool
