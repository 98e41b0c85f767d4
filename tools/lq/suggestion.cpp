#include "tools/lq/suggestion.h"

#include "lq_data/host/text/message.h"

namespace lq::tool {

using host::Say;

std::string SeeHelp(const std::string& command) {
    return Say("; see {}", "lq " + command + (command.empty() ? "--help" : " --help"));
}

std::string Suggestion::Text(const std::string& otherwise) const {
    return Found().empty() ? otherwise : Say("; did you mean '{}'?", Found());
}

std::string DidYouMean(const std::string& word, const std::vector<std::string>& known,
                       const std::string& otherwise) {
    Suggestion suggestion(word);
    for (const std::string& candidate : known) {
        suggestion.Consider(candidate);
    }
    return suggestion.Text(otherwise);
}

}  // namespace lq::tool
