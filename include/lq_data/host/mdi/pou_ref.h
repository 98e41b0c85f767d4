// A POU reference by name, for callers without an editor.
#pragma once

#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_mdi.h"

namespace lq::host {

class LQ_DATA_API NamedPouRef : public CPouRef {
  public:
    explicit NamedPouRef(const char16_t* name) : name_(name) {}

    void GetName(CLQString* name) const override;

  private:
    CLQString name_;
};

}  // namespace lq::host
