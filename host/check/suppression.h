// Comments and patterns that suppress findings.
#pragma once

#include <unordered_map>
#include <vector>

#include "host/check/store.h"

namespace lq::host::check {

class Run;

class Suppressions {
  public:
    Suppressions(const Run& run, const Store& store);

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
    bool FitsPattern(const Finding& finding) const;
    bool CoveredBy(ID object, const Finding& finding);

    const Run& run_;
    const Store& store_;
    std::vector<Request> requests_;
    std::unordered_map<uint32_t, std::vector<std::size_t>> byObject_;
};

}  // namespace lq::host::check
