// What a mistyped word was meant to be.
#pragma once

#include <cstddef>
#include <string>

#include "lq_data/export.h"

namespace lq::host {

// Of the words that are considered the one that is least far from a mistyped one, whatever the
// case.
class LQ_DATA_API NearestName {
  public:
    explicit NearestName(std::string word);

    // Takes one of the words.
    void Consider(const std::string& candidate);
    // Empty when all are too far.
    const std::string& Found() const { return nearest_; }

  private:
    std::string word_;
    std::size_t least_;
    std::string nearest_;
};

}  // namespace lq::host
