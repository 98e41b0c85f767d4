// Texts that stand once in the page: thousands of variables may have the type of one array, or the
// value of one constant.
#pragma once

#include <cstddef>
#include <deque>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>

#include "lq_data/host/model/flat_index.h"
#include "tools/report/report_page.h"

namespace lq::tool {

class SharedTexts {
  public:
    static constexpr size_t kNowhere = std::numeric_limits<size_t>::max();

    // No more than `most` are kept.
    explicit SharedTexts(size_t most) : most_(most) {}

    // The number of the text; kNowhere when it is new and there are as many as may be.
    size_t PlaceOf(const std::string& text) {
        const auto known = places_.find(text);
        if (known != places_.end()) {
            return known->second;
        }
        if (texts_.size() == most_) {
            return kNowhere;
        }
        texts_.push_back(text);
        return places_.emplace(texts_.back(), texts_.size() - 1).first->second;
    }

    // As a list.
    void Write(ReportPage& page) const {
        page.Add("[");
        for (const std::string& text : texts_) {
            page.Add(&text == &texts_.front() ? "" : ",");
            page.AddText(text);
        }
        page.Add("]");
    }

  private:
    const size_t most_;
    std::deque<std::string> texts_;
    std::unordered_map<std::string_view, size_t, host::BytesHash> places_;  // in texts_
};

}  // namespace lq::tool
