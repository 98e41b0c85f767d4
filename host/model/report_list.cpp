#include "host/model/report_list.h"

#include <utility>

#include "lq_data/host/text/message.h"

namespace lq::host {

Report* ReportList::Warn(uint32_t line, uint32_t column, ReportCode code, std::string message) {
    constexpr std::size_t kMost = 1000;
    if (byMessage_.size() >= kMost && !byMessage_.contains(message)) {
        message = Say("there is more to report, which is not told");
        code = kMoreReports;
    }
    const auto [known, isNew] = byMessage_.emplace(message, reports_.size());
    if (!isNew) {
        ++reports_[known->second].more;
        return nullptr;
    }
    return &reports_.emplace_back(
        Report{fileName_, line, column, {}, std::move(message), 0, false, code});
}

void ReportList::Fail(uint32_t line, uint32_t column, std::string message) {
    reports_.push_back({fileName_, line, column, {}, std::move(message), 0, true, kUnreadable});
}

}  // namespace lq::host
