// The reports on one file, as a reader finds what they tell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/model/report_codes.h"
#include "lq_data/export.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/text/report.h"

namespace lq::host {

class LQ_DATA_API ReportList {
  public:
    ReportList(std::string fileName, std::vector<Report>& reports)
        : fileName_(std::move(fileName)), reports_(reports) {}

    const std::string& FileName() const { return fileName_; }

    // Reports of one message are grouped; of different ones the first thousand are kept. The new
    // report, until the next one; null when the message is known.
    Report* Warn(uint32_t line, uint32_t column, ReportCode code, std::string message);
    void Fail(uint32_t line, uint32_t column, std::string message);

  private:
    std::string fileName_;
    std::vector<Report>& reports_;
    std::unordered_map<std::string, std::size_t, BytesHash> byMessage_;  // indexes of reports_
};

}  // namespace lq::host
