// A project as lq::Translate takes it.
#pragma once

#include "lq_data/export.h"
#include "lq_data/host/model/project.h"
#include "lq_data/translate.h"

namespace lq::host {

// All variable lists, data types and units of a project, which must be the current one while it is
// translated, with the lines and columns, temporaries, labels and jumps that the project knows.
class LQ_DATA_API ProjectSource : public TranslationSource {
  public:
    explicit ProjectSource(const Project& project);

    const LQSELECTION* GetGlobals() override { return &globals_; }
    const LQSELECTION* GetTypes() override { return &types_; }
    const LQSELECTION* GetUnits() override { return &units_; }
    SourcePlace GetPlace(ID id) override;
    bool IsTemporary(ID declaration) override;
    void GiveMarks(ID unit, MarkTaker& taker) override;

  private:
    // All objects of a sort.
    class AllOf final : public LQSELECTION {
      public:
        AllOf(Sort sort, std::size_t count) : sort_(sort), count_(static_cast<int32_t>(count)) {}

        int32_t GetCount() const override { return count_; }
        ID GetID(int32_t index) const override {
            return MakeId(sort_, static_cast<uint32_t>(index));
        }

      private:
        Sort sort_;
        int32_t count_;
    };

    const Project& project_;
    AllOf globals_;
    AllOf types_;
    IdSelection units_;
};

}  // namespace lq::host
