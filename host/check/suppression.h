// Comments and patterns that suppress findings.
#pragma once

#include <unordered_map>
#include <vector>

#include "lq_data/host/check/check.h"

namespace lq::host::check {

class Run;

class Suppressions {
  public:
    explicit Suppressions(const Run& run);

    // Whether a comment at the finding's object, or at what holds it, suppresses it, or a pattern.
    bool Cover(const Finding& finding);
    // What was asked for and suppressed nothing.
    void ReportUnused(Run& run) const;

  private:
    struct Request {
        ID object;
        std::string word;
        std::vector<const Check*> checks;
        bool isUsed = false;
    };

    void Read(ID object, Text comment);
    void ReadAll();
    bool CoveredBy(ID object, const Finding& finding);

    const Run& run_;
    std::vector<Request> requests_;
    std::unordered_map<uint32_t, std::vector<std::size_t>> byObject_;
};

}  // namespace lq::host::check
