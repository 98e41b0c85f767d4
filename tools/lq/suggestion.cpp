#include "tools/lq/suggestion.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "lq_data/host/text/message.h"

namespace lq::tool {

using host::Say;

namespace {

char Lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// How many letters must be added, left out, replaced or exchanged with their neighbour.
size_t Distance(const std::string& a, const std::string& b) {
    std::vector<size_t> beforeLast;
    std::vector<size_t> last(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) {
        last[j] = j;
    }
    for (size_t i = 1; i <= a.size(); ++i) {
        std::vector<size_t> row(b.size() + 1, i);
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t replaced = Lower(a[i - 1]) == Lower(b[j - 1]) ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + replaced});
            const bool isExchange = i > 1 && j > 1 && Lower(a[i - 1]) == Lower(b[j - 2]) &&
                                    Lower(a[i - 2]) == Lower(b[j - 1]);
            if (isExchange) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        beforeLast = std::move(last);
        last = std::move(row);
    }
    return last[b.size()];
}

}  // namespace

std::string SeeHelp(const std::string& command) {
    return Say("; see {}", "lq " + command + (command.empty() ? "--help" : " --help"));
}

std::string DidYouMean(const std::string& word, const std::vector<std::string>& known,
                       const std::string& otherwise) {
    size_t least = std::max<size_t>(1, word.size() / 3) + 1;
    const std::string* nearest = nullptr;
    for (const std::string& candidate : known) {
        const size_t longer = std::max(word.size(), candidate.size());
        if (longer - std::min(word.size(), candidate.size()) >= least) {
            continue;  // the lengths alone are too far apart
        }
        const size_t distance = Distance(word, candidate);
        if (distance < least && distance < longer) {
            least = distance;
            nearest = &candidate;
        }
    }
    return nearest ? Say("; did you mean '{}'?", *nearest) : otherwise;
}

}  // namespace lq::tool
