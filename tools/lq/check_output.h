// The forms in which `lq check` prints findings.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "lq_data/host/check/check.h"
#include "tools/lq/output.h"

namespace lq::tool {

// What the checks found, without what a baseline knows. It is counted as it is printed.
class CheckResult {
  public:
    CheckResult(const host::Findings& findings, const std::unordered_set<std::string>& baseline)
        : suppressed(findings.Suppressed()), findings_(findings), baseline_(baseline) {}

    void ForEach(const host::TakeFinding& take);

    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t notes = 0;
    const std::size_t suppressed;
    std::size_t known = 0;  // of the baseline, and not among the findings

  private:
    const host::Findings& findings_;
    const std::unordered_set<std::string>& baseline_;
};

void PrintFindingsAsText(CheckResult& result);
void PrintFindingsAsJson(CheckResult& result);
void PrintFindingsAsLines(CheckResult& result);  // one JSON object a line
void PrintFindingsAsSarif(CheckResult& result);

// A finding as a member of a document.
Json ToJson(const host::Finding& finding);

// The table of checks, or some of it.
void PrintChecks(const std::vector<const host::Check*>& checks, bool json);
void PrintExplanation(const host::Check& check);

}  // namespace lq::tool
