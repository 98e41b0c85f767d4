// What a mistyped word was meant to be.
#pragma once

#include <string>
#include <vector>

namespace lq::tool {

// "; see lq --help", or "; see lq show --help" for that command.
std::string SeeHelp(const std::string& command = "");

// Of the words that are considered the one that is least far from a mistyped one, whatever the
// case.
class Suggestion {
  public:
    explicit Suggestion(std::string word);

    void Consider(const std::string& candidate);
    // "; did you mean 'translate'?", or `otherwise` when all are too far.
    std::string Text(const std::string& otherwise = "") const;

  private:
    std::string word_;
    size_t least_;
    std::string nearest_;
};

// The same of a list.
std::string DidYouMean(const std::string& word, const std::vector<std::string>& known,
                       const std::string& otherwise = "");

}  // namespace lq::tool
