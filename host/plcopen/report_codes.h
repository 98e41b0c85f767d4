// The codes of reports: those of the checks (lq_data/host/check/check.h) that they are. None is
// ever given another meaning.
#pragma once

#include <cstdint>

namespace lq::host::plcopen {

enum ReportCode : uint16_t {
    kUnknownElement = 10,
    kUnknownAttribute = 11,
    kUnknownText = 12,
    kNotKept = 13,
    kMissingAttribute = 14,
    kMissingElement = 15,
    kBadAttribute = 16,
    kSectionNarrowed = 17,
    kNameBeyondLimit = 18,
    kUnitLeftOut = 20,
    // What checks of the model find, too.
    kDuplicateUnit = 1004,
    kDuplicateGlobal = 1011,
    kTaskUnknown = 7005,  // which only the reader sees
    kInterval = 7007,
};

}  // namespace lq::host::plcopen
