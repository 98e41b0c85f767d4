// What a mistyped word was meant to be.
#pragma once

#include <string>
#include <vector>

#include "lq_data/host/text/nearest_name.h"

namespace lq::tool {

// "; see lq --help", or "; see lq show --help" for that command.
std::string SeeHelp(const std::string& command = "");

// The nearest word, as messages say it.
class Suggestion : public host::NearestName {
  public:
    using NearestName::NearestName;

    // "; did you mean 'translate'?", or `otherwise` when all are too far.
    std::string Text(const std::string& otherwise = "") const;
};

// The same of a list.
std::string DidYouMean(const std::string& word, const std::vector<std::string>& known,
                       const std::string& otherwise = "");

}  // namespace lq::tool
