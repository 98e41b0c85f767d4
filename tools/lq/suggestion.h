// What a mistyped word was meant to be.
#pragma once

#include <string>
#include <vector>

namespace lq::tool {

// "; see lq --help", or "; see lq show --help" for that command.
std::string SeeHelp(const std::string& command = "");

// "; did you mean 'translate'?" for the known word that is least far from `word`, whatever the
// case; `otherwise` when all are too far.
std::string DidYouMean(const std::string& word, const std::vector<std::string>& known,
                       const std::string& otherwise = "");

}  // namespace lq::tool
