// The forms in which `lq check` prints findings.
#pragma once

#include <vector>

#include "lq_data/host/check/check.h"
#include "tools/lq/output.h"

namespace lq::tool {

struct CheckResult {
    std::vector<host::Finding> findings;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t notes = 0;
    std::size_t suppressed = 0;
    std::size_t known = 0;  // of the baseline, and not among the findings
};

void PrintFindingsAsText(const CheckResult& result);
void PrintFindingsAsJson(const CheckResult& result);
void PrintFindingsAsLines(const CheckResult& result);  // one JSON object a line
void PrintFindingsAsSarif(const CheckResult& result);

// A finding as a member of a document.
Json ToJson(const host::Finding& finding);

// The table of checks, or some of it.
void PrintChecks(const std::vector<const host::Check*>& checks, bool json);
void PrintExplanation(const host::Check& check);

}  // namespace lq::tool
