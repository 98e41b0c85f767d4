// Which units and data types the readers left something out of: what is missing there may use
// anything, or have any name.
#pragma once

#include <vector>

#include "host/check/run.h"

namespace lq::host::check {

class LeftOut {
  public:
    explicit LeftOut(const Run& run);

    bool Of(ID object) const { return isOf_[graph_.NodeOf(object)]; }
    bool Any() const { return any_; }
    // Whether something of a configuration was left out, which may use any global: the arguments of
    // a program.
    bool OfConfigurations() const { return ofConfigurations_; }
    // Whether something in front of all units of a text was left out, which may declare names for
    // all of them.
    bool MayDeclare() const { return mayDeclare_; }

  private:
    const Graph& graph_;
    std::vector<bool> isOf_;  // by node
    bool any_ = false;
    bool ofConfigurations_ = false;
    bool mayDeclare_ = false;
};

}  // namespace lq::host::check
