// The codes of what readers report: those of the checks (lq_data/host/check/check.h) that they are.
// None is ever given another meaning.
#pragma once

#include <cstdint>

namespace lq::host {

enum ReportCode : uint16_t {
    kUnreadable = 1,
    kMoreReports = 3,
    kUnknownElement = 10,
    kUnknownAttribute = 11,
    kUnknownText = 12,
    kNotKept = 13,
    kMissingAttribute = 14,
    kMissingElement = 15,
    kBadAttribute = 16,
    kSectionNarrowed = 17,
    kNameBeyondLimit = 18,
    kNotRead = 19,
    kUnitLeftOut = 20,
    // What checks of the model find, too.
    kDuplicateUnit = 1004,
    kDuplicateGlobal = 1011,
    kTaskUnknown = 7005,  // which only readers see
    kInterval = 7007,
};

}  // namespace lq::host
