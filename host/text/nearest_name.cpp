#include "lq_data/host/text/nearest_name.h"

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

namespace lq::host {

namespace {

char Lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// How many letters must be added, left out, replaced or exchanged with their neighbour.
std::size_t Distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::vector<std::size_t> row(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = Lower(a[i - 1]) == Lower(b[j - 1]) ? 0 : 1;
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

NearestName::NearestName(std::string word)
    : word_(std::move(word)), least_(std::max<std::size_t>(1, word_.size() / 3) + 1) {}

void NearestName::Consider(const std::string& candidate) {
    const std::size_t longer = std::max(word_.size(), candidate.size());
    if (longer - std::min(word_.size(), candidate.size()) >= least_) {
        return;  // the lengths alone are too far apart
    }
    const std::size_t distance = Distance(word_, candidate);
    if (distance < least_ && distance < longer) {
        least_ = distance;
        nearest_ = candidate;
    }
}

}  // namespace lq::host
